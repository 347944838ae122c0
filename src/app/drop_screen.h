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

 signals:
  void openRequested();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  DropArea* area_ = nullptr;
  QPushButton* open_ = nullptr;
};

}  // namespace lumenscribe::app
