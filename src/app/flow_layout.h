// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QLayout>
#include <QList>

namespace lumenscribe::app {

/// Lays its items out left to right and wraps them onto new lines (pills, tiles, buttons);
/// right-aligned, each line keeps to the right edge.
class FlowLayout final : public QLayout {
 public:
  explicit FlowLayout(QWidget* parent = nullptr, int spacing = 8);
  ~FlowLayout() override;

  void setRightAligned(bool rightAligned) { rightAligned_ = rightAligned; }

  void addItem(QLayoutItem* item) override;
  int count() const override;
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  Qt::Orientations expandingDirections() const override;
  bool hasHeightForWidth() const override;
  int heightForWidth(int width) const override;
  QSize minimumSize() const override;
  QSize sizeHint() const override;
  void setGeometry(const QRect& rect) override;

 private:
  int arrange(const QRect& rect, bool apply) const;

  QList<QLayoutItem*> items_;
  int spacing_;
  bool rightAligned_ = false;
};

}  // namespace lumenscribe::app
