// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QString>
#include <string>

#include "app/presentation.h"

namespace lumenscribe::app {

/// A capsule button: optional icon, text, optional bold count, tinted in an accent colour.
/// Severity pills, summary pills and the section buttons are all pills.
class PillButton : public QAbstractButton {
  Q_OBJECT

 public:
  PillButton(const QString& text, std::string symbolName, Accent accent, QWidget* parent = nullptr);

  /// A bold number drawn before the text ("2 Caution").
  void setCount(qint64 count);
  /// Drawn grey and not clickable (a severity with nothing to show).
  void setMuted(bool muted);
  bool isMuted() const { return muted_; }
  /// Paints the card colour under the tint, for a pill that floats over other content.
  void setOpaque(bool opaque);
  void setSymbol(std::string symbolName);
  void setTrailingSymbol(std::string symbolName);

  QSize sizeHint() const override;

 signals:
  void hoverChanged(bool hovered);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  QColor tone() const;
  QString countText() const;

  std::string symbolName_;
  std::string trailingSymbol_;
  Accent accent_;
  qint64 count_ = -1;
  bool muted_ = false;
  bool opaque_ = false;
  bool hovered_ = false;
};

/// A small uppercase label on a tinted capsule ("Local", "CAUTION", "2 WARNING").
class Badge : public QWidget {
  Q_OBJECT

 public:
  Badge(const QString& text, Accent accent, QWidget* parent = nullptr);
  QString text() const { return text_; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QFont badgeFont() const;

  QString text_;
  Accent accent_;
};

/// One feature of the About window: icon and title on a quiet outlined capsule.
class FeaturePill : public QWidget {
  Q_OBJECT

 public:
  FeaturePill(const QString& title, std::string systemImage, QWidget* parent = nullptr);
  QString title() const { return title_; }
  const std::string& systemImage() const { return systemImage_; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QFont pillFont() const;

  QString title_;
  std::string systemImage_;
};

}  // namespace lumenscribe::app
