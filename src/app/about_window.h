// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWidget>
#include <optional>
#include <string_view>

class QPushButton;

namespace lumenscribe::app {

/// "Version {short} ({build})", with "1.0" and "1" standing in for what is missing.
QString versionText(std::optional<std::string_view> shortVersion,
                    std::optional<std::string_view> build);
/// The version line of this build.
QString versionText();

/// The About window's content: icon, name, tagline, version, description, feature pills,
/// the maker's link and credit, and "Done".
class LumenscribeAboutView : public QWidget {
  Q_OBJECT

 public:
  explicit LumenscribeAboutView(QWidget* parent = nullptr);

  QPushButton* doneButton() const { return done_; }

 signals:
  void doneRequested();

 private:
  QPushButton* done_ = nullptr;
};

/// The About window: fixed 540 x 500, closable only, movable by its background.
class AboutWindow : public QWidget {
  Q_OBJECT

 public:
  explicit AboutWindow(QWidget* parent = nullptr);

  LumenscribeAboutView* view() const { return view_; }

 protected:
  void mousePressEvent(QMouseEvent* event) override;

 private:
  LumenscribeAboutView* view_ = nullptr;
};

}  // namespace lumenscribe::app
