// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <optional>
#include <string>

#include "app/presentation.h"

namespace lumenscribe::app {

/// A rounded panel in the palette's card colours; the building block of the result screen.
class Card : public QWidget {
  Q_OBJECT

 public:
  explicit Card(QWidget* parent = nullptr);

  /// Draws a faint tint of `color` over the fill (the progress card, the drop area).
  void setTint(const QColor& color);
  /// Outlines the card in the accent colour while the pointer is over it.
  void setHoverHighlight(bool enabled);

 signals:
  void hoverChanged(bool hovered);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  QColor tint_;
  bool hoverHighlight_ = false;
  bool hovered_ = false;
};

/// A symbol on a rounded square tinted in its accent colour (section and card headings).
class IconBadge : public QWidget {
  Q_OBJECT

 public:
  IconBadge(std::string symbolName, Accent accent, int side = 30, QWidget* parent = nullptr);
  const std::string& symbolName() const { return symbolName_; }
  Accent accent() const { return accent_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::string symbolName_;
  Accent accent_;
};

/// A bare symbol in an accent colour, or in the secondary text colour without one.
class SymbolView : public QWidget {
  Q_OBJECT

 public:
  SymbolView(std::string symbolName, std::optional<Accent> accent, int side,
             QWidget* parent = nullptr);
  const std::string& symbolName() const { return symbolName_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::string symbolName_;
  std::optional<Accent> accent_;
};

/// A thin horizontal rule in the outline colour.
class Divider : public QWidget {
  Q_OBJECT

 public:
  explicit Divider(QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace lumenscribe::app
