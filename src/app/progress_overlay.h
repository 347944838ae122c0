// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <cstdint>

class QLabel;
class QProgressBar;
class QPushButton;

namespace lumenscribe::app {

/// Dims the whole window while an inspection runs, with a card that says "Inspecting file…",
/// names the item, shows how far a long fingerprint or walk has come and offers Cancel. It
/// sits on top of everything and swallows clicks and keys (Escape cancels).
class ProgressOverlay : public QWidget {
  Q_OBJECT

 public:
  explicit ProgressOverlay(QWidget* parent);

  /// A fresh card for the item called `itemName`: busy, no count, no note.
  void start(const QString& itemName);
  /// Shows how many entries a folder walk or ZIP listing has gone through ("12345 items so
  /// far"); 0 hides the line.
  void setProgress(std::int64_t entries);
  /// Shows how much of the item has been fingerprinted, as a filling bar and "3.1 MB of
  /// 12 MB read"; a fingerprint not begun or done leaves the bar busy and hides the line.
  void setBytesRead(std::int64_t bytesRead, std::int64_t totalBytes);
  /// Says that another item cannot be inspected until this one is done or cancelled.
  void showBusyNote();

  QLabel* itemLabel() const { return item_; }
  QProgressBar* progressBar() const { return bar_; }
  QLabel* countLabel() const { return count_; }
  QLabel* noteLabel() const { return note_; }
  QPushButton* cancelButton() const { return cancel_; }

 signals:
  void cancelRequested();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  void showItemName();

  QString itemName_;
  QLabel* item_ = nullptr;
  QProgressBar* bar_ = nullptr;
  QLabel* count_ = nullptr;
  QLabel* note_ = nullptr;
  QPushButton* cancel_ = nullptr;
  std::int64_t entries_ = 0;
};

}  // namespace lumenscribe::app
