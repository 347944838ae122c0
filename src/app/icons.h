// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <string_view>

class QAbstractButton;
class QPainter;
class QWidget;
class QRectF;

namespace lumenscribe::app {

/// An icon for a symbol name, drawn in one colour at any size.
QIcon symbolIcon(std::string_view symbolName, const QColor& color);

/// The same as a pixmap of `logicalSize` points for a screen of `devicePixelRatio`.
QPixmap symbolPixmap(std::string_view symbolName, const QColor& color, int logicalSize,
                     qreal devicePixelRatio);

/// Draws the icon into `target` directly.
void paintSymbol(QPainter& painter, const QRectF& target, std::string_view symbolName,
                 const QColor& color);

/// Gives a button the icon of a symbol in its text colour, and remembers the symbol so that
/// refreshButtonSymbols can redraw it after a theme change.
void setButtonSymbol(QAbstractButton* button, std::string_view symbolName);
void refreshButtonSymbols(QWidget* root);

/// True when the icon of this symbol is compiled into the program.
bool hasSymbolIcon(std::string_view symbolName);

}  // namespace lumenscribe::app
