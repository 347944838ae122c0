// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "app/card.h"
#include "lumenscribe/result.h"

namespace lumenscribe::app {

/// "Sharing & Privacy": what someone who receives the file may learn, one row per finding.
class PrivacyCard : public Card {
  Q_OBJECT

 public:
  explicit PrivacyCard(const std::vector<PrivacyFinding>& findings, QWidget* parent = nullptr);

  /// The count badges in the heading ("2 CAUTION"), in order.
  QStringList countTexts() const;
  /// The badge of each finding row ("INFO", "CAUTION", "WARNING"), in order.
  QStringList findingBadges() const;
};

}  // namespace lumenscribe::app
