// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QMainWindow>
#include <QObject>
#include <QPointer>
#include <QSize>
#include <memory>

#include "app/about_window.h"

class QScreen;

namespace lumenscribe::app {

class ContentView;

/// The one main window: the content view under a File and a Help menu.
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  /// The content's own minimum; the window adds its menu bar to it.
  static constexpr QSize kMinimumContentSize{920, 640};
  static constexpr QSize kPreferredSize{1040, 780};
  /// Room kept for the window manager's frame when the window is fitted to a screen.
  static constexpr QSize kFrameAllowance{16, 48};

  explicit MainWindow(QWidget* parent = nullptr);
  ContentView* contentView() const { return content_; }

  /// Sizes the window to its preferred size within the available area of `screen` (never
  /// below its minimum) and centres it there.
  void fitToScreen(const QScreen* screen);

 signals:
  void aboutRequested();

 private:
  ContentView* content_ = nullptr;
};

/// The application: owns the main window and the single About window.
class LumenscribeApp : public QObject {
  Q_OBJECT

 public:
  LumenscribeApp();
  ~LumenscribeApp() override;

  MainWindow* mainWindow() const { return window_.get(); }

  /// Opens the About window, or brings the open one to the front.
  void showAboutWindow();
  /// Loads the image and PDF decoders on a worker thread once the event loop runs.
  void warmUpDecoders();

  /// The open About window; null when none is open.
  AboutWindow* aboutWindow() const { return about_; }

 private:
  std::unique_ptr<MainWindow> window_;
  QPointer<AboutWindow> about_;
};

}  // namespace lumenscribe::app
