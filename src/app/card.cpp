// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/card.h"

#include <QPainter>
#include <QPainterPath>

#include "app/icons.h"
#include "app/theme.h"

namespace lumenscribe::app {

namespace {
constexpr qreal kCornerRadius = 14.0;
}

Card::Card(QWidget* parent) : QWidget(parent) { setAttribute(Qt::WA_Hover); }

void Card::setTint(const QColor& color) {
  tint_ = color;
  update();
}

void Card::setHoverHighlight(bool enabled) {
  hoverHighlight_ = enabled;
  update();
}

void Card::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF bounds = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  QPainterPath path;
  path.addRoundedRect(bounds, kCornerRadius, kCornerRadius);
  painter.fillPath(path, cardFill(palette()));
  if (tint_.isValid()) painter.fillPath(path, tint_);
  const bool highlighted = hoverHighlight_ && hovered_;
  painter.setPen(QPen(
      highlighted ? withAlpha(palette().color(QPalette::Highlight), 0.55) : cardOutline(palette()),
      1.0));
  painter.drawPath(path);
}

void Card::enterEvent(QEnterEvent* event) {
  hovered_ = true;
  if (hoverHighlight_) update();
  emit hoverChanged(true);
  QWidget::enterEvent(event);
}

void Card::leaveEvent(QEvent* event) {
  hovered_ = false;
  if (hoverHighlight_) update();
  emit hoverChanged(false);
  QWidget::leaveEvent(event);
}

IconBadge::IconBadge(std::string symbolName, Accent accent, int side, QWidget* parent)
    : QWidget(parent), symbolName_(std::move(symbolName)), accent_(accent) {
  setFixedSize(side, side);
}

void IconBadge::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor color = accentColor(accent_, palette());
  QPainterPath path;
  path.addRoundedRect(QRectF(rect()), width() * 0.28, width() * 0.28);
  painter.fillPath(path, withAlpha(color, 0.15));
  const qreal inset = width() * 0.22;
  paintSymbol(painter, QRectF(rect()).adjusted(inset, inset, -inset, -inset), symbolName_, color);
}

SymbolView::SymbolView(std::string symbolName, std::optional<Accent> accent, int side,
                       QWidget* parent)
    : QWidget(parent), symbolName_(std::move(symbolName)), accent_(accent) {
  setFixedSize(side, side);
}

void SymbolView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QColor color = accent_ ? accentColor(*accent_, palette()) : secondaryText(palette());
  paintSymbol(painter, QRectF(rect()), symbolName_, color);
}

Divider::Divider(QWidget* parent) : QWidget(parent) {
  setFixedHeight(1);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Divider::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), cardOutline(palette()));
}

}  // namespace lumenscribe::app
