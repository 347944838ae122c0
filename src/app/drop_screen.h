// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QPushButton;

namespace lumenscribe::app {

class DropArea;

/// The screen shown while there is no result: the invitation and the drop area.
class DropScreen : public QWidget {
  Q_OBJECT

 public:
  explicit DropScreen(QWidget* parent = nullptr);

  /// Highlights the drop area while a drag of a file is over the window.
  void setTargeted(bool targeted);
  bool isTargeted() const;
  QPushButton* openButton() const { return open_; }
  QPushButton* openFolderButton() const { return openFolder_; }

 signals:
  /// "Open…" (false) or "Open Folder…" (true).
  void openRequested(bool folder);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  DropArea* area_ = nullptr;
  QPushButton* open_ = nullptr;
  QPushButton* openFolder_ = nullptr;
};

}  // namespace lumenscribe::app
