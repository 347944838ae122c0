// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/focus_ring.h"

#include <QApplication>
#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

namespace lumenscribe::app {

void paintFocusRing(QPainter& painter, const QRectF& bounds, qreal radius,
                    const QPalette& palette) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(palette.color(QPalette::Highlight), 2.0));
  const QRectF ring = bounds.adjusted(1, 1, -1, -1);
  painter.drawRoundedRect(ring, qMin(radius, ring.height() / 2), qMin(radius, ring.height() / 2));
  painter.restore();
}

void FocusRingStyle::drawControl(ControlElement element, const QStyleOption* option,
                                 QPainter* painter, const QWidget* widget) const {
  QProxyStyle::drawControl(element, option, painter, widget);
  if (element == CE_PushButton && (option->state & State_HasFocus)) {
    // Inside the button's own border, which stays: a double frame that no default-button
    // outline looks like.
    paintFocusRing(*painter, QRectF(option->rect).adjusted(2, 2, -2, -2), 3, option->palette);
  }
}

void installFocusRingStyle() {
  if (qobject_cast<FocusRingStyle*>(QApplication::style())) return;
  // A fresh instance of the style in use: the proxy takes ownership of what it wraps.
  QStyle* base = QStyleFactory::create(QApplication::style()->name());
  QApplication::setStyle(new FocusRingStyle(base));
}

}  // namespace lumenscribe::app
