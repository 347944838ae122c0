// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/pills.h"

#include <QPainter>
#include <QPainterPath>

#include "app/focus_ring.h"
#include "app/icons.h"
#include "app/theme.h"

namespace lumenscribe::app {

namespace {

constexpr int kIconSize = 14;
constexpr int kIconGap = 6;
constexpr int kPaddingX = 12;
constexpr int kPaddingY = 6;

void fillCapsule(QPainter& painter, const QRectF& bounds, const QColor& fill,
                 const QColor& stroke) {
  QPainterPath path;
  const qreal radius = bounds.height() / 2.0;
  path.addRoundedRect(bounds, radius, radius);
  painter.fillPath(path, fill);
  if (stroke.isValid()) {
    painter.setPen(QPen(stroke, 1.0));
    painter.drawPath(path);
  }
}

}  // namespace

PillButton::PillButton(const QString& text, std::string symbolName, Accent accent, QWidget* parent)
    : QAbstractButton(parent), symbolName_(std::move(symbolName)), accent_(accent) {
  setText(text);
  setCursor(Qt::PointingHandCursor);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PillButton::setCount(qint64 count) {
  count_ = count;
  updateGeometry();
  update();
}

void PillButton::setMuted(bool muted) {
  muted_ = muted;
  setCursor(muted ? Qt::ArrowCursor : Qt::PointingHandCursor);
  // Nothing to do with it, so Tab passes it by.
  setFocusPolicy(muted ? Qt::NoFocus : Qt::StrongFocus);
  update();
}

void PillButton::setOpaque(bool opaque) {
  opaque_ = opaque;
  update();
}

void PillButton::setSymbol(std::string symbolName) {
  symbolName_ = std::move(symbolName);
  updateGeometry();
  update();
}

void PillButton::setTrailingSymbol(std::string symbolName) {
  trailingSymbol_ = std::move(symbolName);
  updateGeometry();
  update();
}

QString PillButton::countText() const { return count_ >= 0 ? QString::number(count_) : QString(); }

QSize PillButton::sizeHint() const {
  const QFontMetrics metrics(font());
  QFont bold = font();
  bold.setBold(true);
  int width = kPaddingX * 2 + metrics.horizontalAdvance(text());
  if (!symbolName_.empty()) width += kIconSize + kIconGap;
  if (!trailingSymbol_.empty()) width += kIconSize + kIconGap;
  if (count_ >= 0) width += QFontMetrics(bold).horizontalAdvance(countText()) + kIconGap;
  const int height = qMax(metrics.height(), kIconSize) + kPaddingY * 2;
  return {width, height};
}

QColor PillButton::tone() const {
  if (muted_) return secondaryText(palette());
  return accentColor(accent_, palette());
}

void PillButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor color = tone();
  const bool active = hovered_ && !muted_ && isEnabled();
  qreal fillAlpha = muted_ ? 0.06 : (active ? 0.22 : 0.12);
  if (isDown() && !muted_) fillAlpha = 0.30;
  if (opaque_)
    fillCapsule(painter, QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cardFill(palette()), {});
  fillCapsule(painter, QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), withAlpha(color, fillAlpha),
              withAlpha(color, active ? 0.45 : 0.22));
  if (hasFocus()) paintFocusRing(painter, QRectF(rect()), height() / 2.0, palette());

  const QColor textColor = isEnabled() ? color : withAlpha(color, 0.45);
  qreal x = kPaddingX;
  const qreal iconY = (height() - kIconSize) / 2.0;
  if (!symbolName_.empty()) {
    paintSymbol(painter, QRectF(x, iconY, kIconSize, kIconSize), symbolName_, textColor);
    x += kIconSize + kIconGap;
  }
  if (count_ >= 0) {
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(textColor);
    const int advance = QFontMetrics(bold).horizontalAdvance(countText());
    painter.drawText(QRectF(x, 0, advance, height()), Qt::AlignVCenter | Qt::AlignLeft,
                     countText());
    x += advance + kIconGap;
  }
  painter.setFont(font());
  painter.setPen(textColor);
  const int textWidth = fontMetrics().horizontalAdvance(text());
  painter.drawText(QRectF(x, 0, textWidth + 1, height()), Qt::AlignVCenter | Qt::AlignLeft, text());
  x += textWidth + kIconGap;
  if (!trailingSymbol_.empty()) {
    paintSymbol(painter, QRectF(x, iconY, kIconSize, kIconSize), trailingSymbol_, textColor);
  }
}

void PillButton::enterEvent(QEnterEvent* event) {
  hovered_ = true;
  update();
  emit hoverChanged(true);
  QAbstractButton::enterEvent(event);
}

void PillButton::leaveEvent(QEvent* event) {
  hovered_ = false;
  update();
  emit hoverChanged(false);
  QAbstractButton::leaveEvent(event);
}

Badge::Badge(const QString& text, Accent accent, QWidget* parent)
    : QWidget(parent), text_(text), accent_(accent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QFont Badge::badgeFont() const { return scaledFont(font(), 0.82, QFont::Bold); }

QSize Badge::sizeHint() const {
  const QFontMetrics metrics(badgeFont());
  return {metrics.horizontalAdvance(text_) + 16, metrics.height() + 6};
}

void Badge::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor color = accentColor(accent_, palette());
  fillCapsule(painter, QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), withAlpha(color, 0.14), {});
  painter.setFont(badgeFont());
  painter.setPen(color);
  painter.drawText(rect(), Qt::AlignCenter, text_);
}

FeaturePill::FeaturePill(const QString& title, std::string systemImage, QWidget* parent)
    : QWidget(parent), title_(title), systemImage_(std::move(systemImage)) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QFont FeaturePill::pillFont() const { return scaledFont(font(), 1.0, QFont::Medium); }

QSize FeaturePill::sizeHint() const {
  const QFontMetrics metrics(pillFont());
  return {11 * 2 + kIconSize + kIconGap + metrics.horizontalAdvance(title_),
          qMax(metrics.height(), kIconSize) + 7 * 2};
}

void FeaturePill::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor primary = palette().color(QPalette::WindowText);
  fillCapsule(painter, QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), withAlpha(primary, 0.055),
              withAlpha(primary, 0.08));
  const QColor text = secondaryText(palette());
  paintSymbol(painter, QRectF(11, (height() - kIconSize) / 2.0, kIconSize, kIconSize), systemImage_,
              text);
  painter.setFont(pillFont());
  painter.setPen(text);
  painter.drawText(QRect(11 + kIconSize + kIconGap, 0, width(), height()),
                   Qt::AlignVCenter | Qt::AlignLeft, title_);
}

}  // namespace lumenscribe::app
