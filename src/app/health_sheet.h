// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include "health/health_explanation.h"

namespace lumenscribe::app {

/// "Inspect Further": explains a doubtful health verdict in plain language. Reads only the
/// rows of the "File Health" section.
class HealthSheet : public QDialog {
  Q_OBJECT

 public:
  explicit HealthSheet(const InsightSection& section, QWidget* parent = nullptr);

  const HealthInspection& inspection() const { return inspection_; }

 private:
  HealthInspection inspection_;
};

}  // namespace lumenscribe::app
