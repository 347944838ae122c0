// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/section_card.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "app/flow_layout.h"
#include "app/pills.h"
#include "app/text_labels.h"
#include "app/theme.h"
#include "health/health_explanation.h"
#include "report/text_report.h"

namespace lumenscribe::app {

namespace {

/// A container count shown large, with its label under it.
QWidget* highlightTile(const InsightRow& row, Accent accent, QWidget* parent) {
  auto* tile = new Card(parent);
  tile->setTint(withAlpha(accentColor(accent, parent->palette()), 0.07));
  auto* layout = new QVBoxLayout(tile);
  layout->setContentsMargins(14, 8, 14, 8);
  layout->setSpacing(0);
  auto* value = new QLabel(qText(row.value), tile);
  value->setFont(scaledFont(tile->font(), 1.35, QFont::Bold));
  layout->addWidget(value);
  layout->addWidget(quietLabel(qText(row.label), tile));
  return tile;
}

}  // namespace

SectionCard::SectionCard(const InsightSection& section, bool detailsExpanded, QWidget* parent)
    : Card(parent),
      section_(section),
      detailKind_(detailKindFor(section.title)),
      detailsExpanded_(detailsExpanded) {
  setObjectName(QString::fromStdString(sectionAnchor(section_.title)));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(18, 14, 18, 16);
  layout->setSpacing(10);
  buildHeader(layout);
  buildHighlights(layout);
  rowsHost_ = new QWidget(this);
  layout->addWidget(rowsHost_);
  fillRows();
}

void SectionCard::buildHeader(QVBoxLayout* layout) {
  const Accent accent = accentForCard(section_);
  auto* header = new QHBoxLayout;
  header->setSpacing(10);
  header->addWidget(new IconBadge(section_.systemImage, accent, 30, this));
  auto* title = new QLabel(qText(section_.title), this);
  title->setFont(scaledFont(font(), 1.15, QFont::DemiBold));
  header->addWidget(title);
  header->addStretch(1);

  if (detailKind_) {
    const DetailTexts texts = detailTexts(*detailKind_, detailsExpanded_);
    caption_ = quietLabel(qText(texts.caption), this);
    caption_->setObjectName(QStringLiteral("detailCaption"));
    header->addWidget(caption_);
    detailButton_ = new PillButton(qText(texts.button),
                                   detailsExpanded_ ? "chevron.up" : "chevron.down", accent, this);
    detailButton_->setObjectName(QStringLiteral("detailButton"));
    detailButton_->setToolTip(qText(texts.help));
    const DetailKind kind = *detailKind_;
    connect(detailButton_, &QAbstractButton::clicked, this,
            [this, kind] { emit detailsToggleRequested(kind); });
    connect(detailButton_, &PillButton::hoverChanged, this, &SectionCard::detailButtonHoverChanged);
    header->addWidget(detailButton_);
  }

  if (section_.title == "File Health" && offersHealthInspection(section_)) {
    inspectFurtherButton_ =
        new PillButton(QStringLiteral("Inspect Further"), "stethoscope", Accent::orange, this);
    inspectFurtherButton_->setObjectName(QStringLiteral("inspectFurtherButton"));
    inspectFurtherButton_->setTrailingSymbol("chevron.right");
    inspectFurtherButton_->setFont(scaledFont(font(), 1.0, QFont::DemiBold));
    inspectFurtherButton_->setToolTip(
        QStringLiteral("Explain what Lumenscribe found and why the health check is uncertain"));
    connect(inspectFurtherButton_, &QAbstractButton::clicked, this,
            &SectionCard::inspectFurtherRequested);
    header->addWidget(inspectFurtherButton_);
  }
  layout->addLayout(header);
}

void SectionCard::buildHighlights(QVBoxLayout* layout) {
  const std::vector<const InsightRow*> highlights = containerHighlights(section_);
  if (highlights.empty()) return;
  auto* host = new QWidget(this);
  host->setObjectName(QStringLiteral("containerHighlights"));
  auto* flow = new FlowLayout(host, 8);
  for (const InsightRow* row : highlights) {
    flow->addWidget(highlightTile(*row, accentForSection(section_.title), host));
  }
  layout->addWidget(host);
}

void SectionCard::addRow(const InsightRow& row) {
  auto* label = quietLabel(qText(displayLabel(row.label)), rowsHost_);
  label->setObjectName(QStringLiteral("rowLabel"));
  auto* value = valueLabel(qText(row.value), rowsHost_);
  rows_->addWidget(label, nextGridRow_, 0);
  rows_->addWidget(value, nextGridRow_, 1);
  ++nextGridRow_;
}

void SectionCard::fillRows() {
  // The grid is rebuilt as a whole when the card expands or collapses.
  delete rows_;
  for (QWidget* child : rowsHost_->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) delete child;
  rows_ = new QGridLayout(rowsHost_);
  rows_->setContentsMargins(0, 0, 0, 0);
  rows_->setHorizontalSpacing(18);
  rows_->setVerticalSpacing(7);
  rows_->setColumnMinimumWidth(0, 190);
  rows_->setColumnStretch(1, 1);
  nextGridRow_ = 0;

  if (!detailKind_) {
    for (const InsightRow& row : section_.rows) addRow(row);
    return;
  }
  const SplitRows split = splitRows(section_, *detailKind_);
  for (const InsightRow* row : split.essentials) addRow(*row);
  if (detailsExpanded_ && !split.remaining.empty()) {
    rows_->addWidget(new Divider(rowsHost_), nextGridRow_++, 0, 1, 2);
    for (const InsightRow* row : split.remaining) addRow(*row);
  }
}

void SectionCard::setDetailsExpanded(bool expanded) {
  if (!detailKind_ || expanded == detailsExpanded_) return;
  detailsExpanded_ = expanded;
  const DetailTexts texts = detailTexts(*detailKind_, expanded);
  caption_->setText(qText(texts.caption));
  detailButton_->setText(qText(texts.button));
  detailButton_->setSymbol(expanded ? "chevron.up" : "chevron.down");
  detailButton_->setToolTip(qText(texts.help));
  fillRows();
}

QStringList SectionCard::visibleRowLabels() const {
  QStringList labels;
  for (int row = 0; row < rows_->rowCount(); ++row) {
    QLayoutItem* item = rows_->itemAtPosition(row, 0);
    if (auto* label = item ? qobject_cast<QLabel*>(item->widget()) : nullptr) {
      labels << label->text();
    }
  }
  return labels;
}

}  // namespace lumenscribe::app
