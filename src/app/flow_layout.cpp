// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/flow_layout.h"

#include <QWidget>

namespace lumenscribe::app {

FlowLayout::FlowLayout(QWidget* parent, int spacing) : QLayout(parent), spacing_(spacing) {
  setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() {
  while (QLayoutItem* item = takeAt(0)) delete item;
}

void FlowLayout::addItem(QLayoutItem* item) { items_.append(item); }

int FlowLayout::count() const { return static_cast<int>(items_.size()); }

QLayoutItem* FlowLayout::itemAt(int index) const {
  return index >= 0 && index < items_.size() ? items_.at(index) : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
  return index >= 0 && index < items_.size() ? items_.takeAt(index) : nullptr;
}

Qt::Orientations FlowLayout::expandingDirections() const { return {}; }

bool FlowLayout::hasHeightForWidth() const { return true; }

int FlowLayout::heightForWidth(int width) const { return arrange(QRect(0, 0, width, 0), false); }

QSize FlowLayout::minimumSize() const {
  QSize size;
  for (const QLayoutItem* item : items_) size = size.expandedTo(item->minimumSize());
  const QMargins margins = contentsMargins();
  return size + QSize(margins.left() + margins.right(), margins.top() + margins.bottom());
}

QSize FlowLayout::sizeHint() const { return minimumSize(); }

void FlowLayout::setGeometry(const QRect& rect) {
  QLayout::setGeometry(rect);
  arrange(rect, true);
}

int FlowLayout::arrange(const QRect& rect, bool apply) const {
  const QRect area = rect.marginsRemoved(contentsMargins());
  int y = area.y();
  int lineHeight = 0;
  QList<std::pair<QLayoutItem*, QSize>> line;
  int lineWidth = 0;
  // Lines are placed once complete, so that a right-aligned line can be pushed over.
  const auto placeLine = [&] {
    int x = area.x() + (rightAligned_ ? qMax(0, area.width() - lineWidth) : 0);
    for (const auto& [item, hint] : line) {
      if (apply) item->setGeometry(QRect(QPoint(x, y), hint));
      x += hint.width() + spacing_;
    }
    line.clear();
    lineWidth = 0;
  };
  for (QLayoutItem* item : items_) {
    if (item->widget() && item->widget()->isHidden()) continue;
    const QSize hint = item->sizeHint();
    const int wanted = line.isEmpty() ? hint.width() : lineWidth + spacing_ + hint.width();
    if (!line.isEmpty() && wanted > area.width()) {
      placeLine();
      y += lineHeight + spacing_;
      lineHeight = 0;
    }
    lineWidth = line.isEmpty() ? hint.width() : lineWidth + spacing_ + hint.width();
    line.append({item, hint});
    lineHeight = qMax(lineHeight, hint.height());
  }
  placeLine();
  return y + lineHeight - rect.y() + contentsMargins().bottom();
}

}  // namespace lumenscribe::app
