// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "app/card.h"
#include "app/presentation.h"
#include "lumenscribe/result.h"

class QGridLayout;
class QLabel;
class QVBoxLayout;

namespace lumenscribe::app {

class PillButton;

/// One section of a result: icon in its accent colour, title and rows. Camera and video
/// sections show their essentials until expanded; a doubtful "File Health" section offers
/// "Inspect Further".
class SectionCard : public Card {
  Q_OBJECT

 public:
  SectionCard(const InsightSection& section, bool detailsExpanded, QWidget* parent = nullptr);

  const InsightSection& section() const { return section_; }
  std::optional<DetailKind> detailKind() const { return detailKind_; }

  /// Shows all rows (true) or only the essentials (false); ignored for ordinary sections.
  void setDetailsExpanded(bool expanded);
  bool detailsExpanded() const { return detailsExpanded_; }

  /// The row labels on screen, in order ("Digital Fingerprint (SHA-256)" included).
  QStringList visibleRowLabels() const;
  /// The "Dive Deeper"/"Show Less" button, or the "Inspect Further" button; may be null.
  PillButton* detailButton() const { return detailButton_; }
  PillButton* inspectFurtherButton() const { return inspectFurtherButton_; }
  QLabel* captionLabel() const { return caption_; }

 signals:
  void detailsToggleRequested(lumenscribe::app::DetailKind kind);
  void inspectFurtherRequested();
  void detailButtonHoverChanged(bool hovered);

 private:
  void buildHeader(QVBoxLayout* layout);
  void buildHighlights(QVBoxLayout* layout);
  void fillRows();
  void addRow(const InsightRow& row);

  InsightSection section_;
  std::optional<DetailKind> detailKind_;
  bool detailsExpanded_ = false;
  QLabel* caption_ = nullptr;
  PillButton* detailButton_ = nullptr;
  PillButton* inspectFurtherButton_ = nullptr;
  QWidget* rowsHost_ = nullptr;
  QGridLayout* rows_ = nullptr;
  int nextGridRow_ = 0;
};

}  // namespace lumenscribe::app
