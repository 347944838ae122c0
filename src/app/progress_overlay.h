// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <cstdint>

class QLabel;

namespace lumenscribe::app {

/// Dims the whole window and shows "Inspecting file…" while an inspection runs. It sits on
/// top of everything and swallows clicks; drops pass through to the window, which ignores them.
class ProgressOverlay : public QWidget {
  Q_OBJECT

 public:
  explicit ProgressOverlay(QWidget* parent);

  /// Shows how many entries a folder walk or ZIP listing has gone through ("12345 items so
  /// far"); 0 hides the line.
  void setProgress(std::int64_t entries);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QLabel* count_ = nullptr;
};

}  // namespace lumenscribe::app
