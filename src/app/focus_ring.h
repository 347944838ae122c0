// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

class QPainter;
class QPalette;
class QRectF;

namespace lumenscribe::app {

/// Draws the ring that marks the control with the keyboard focus: two pixels of the
/// palette's highlight colour just inside `bounds`, its corners rounded by `radius`.
void paintFocusRing(QPainter& painter, const QRectF& bounds, qreal radius, const QPalette& palette);

/// The platform's style, with the focus ring drawn on push buttons: several styles show
/// focus as they show the default button, so the two could not be told apart.
class FocusRingStyle : public QProxyStyle {
  Q_OBJECT

 public:
  using QProxyStyle::QProxyStyle;

  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget = nullptr) const override;
};

/// Puts FocusRingStyle over the application's current style (once; later calls keep it).
void installFocusRingStyle();

}  // namespace lumenscribe::app
