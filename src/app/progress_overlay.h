// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace lumenscribe::app {

/// Dims the whole window and shows "Inspecting file…" while an inspection runs. It sits on
/// top of everything and swallows clicks; drops pass through to the window, which ignores them.
class ProgressOverlay : public QWidget {
  Q_OBJECT

 public:
  explicit ProgressOverlay(QWidget* parent);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace lumenscribe::app
