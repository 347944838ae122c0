// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWidget>
#include <memory>
#include <vector>

#include "app/card.h"
#include "lumenscribe/result.h"

class QAbstractButton;
class QLabel;
class QTextLayout;

namespace lumenscribe::app {

/// Every raw entry as key and value, drawn by one widget: rows are laid out once per width,
/// and only the rows in view are painted, so long lists scroll without layout work.
class RawMetadataList : public QWidget {
  Q_OBJECT

 public:
  explicit RawMetadataList(const RawMetadata& entries, QWidget* parent = nullptr);
  ~RawMetadataList() override;

  int entryCount() const { return static_cast<int>(entries_.size()); }
  /// Key and value of one entry, as shown.
  std::pair<QString, QString> entry(int index) const;

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  struct Row;
  void layoutRows(int width) const;
  int rowAt(int y) const;

  std::vector<std::pair<QString, QString>> entries_;
  mutable std::vector<Row> rows_;
  mutable int laidOutWidth_ = -1;
  mutable int totalHeight_ = 0;
};

/// The collapsible "Raw Metadata" block at the end of the result screen.
class RawMetadataBlock : public Card {
  Q_OBJECT

 public:
  explicit RawMetadataBlock(const RawMetadata& entries, QWidget* parent = nullptr);

  void setExpanded(bool expanded);
  bool isExpanded() const { return expanded_; }
  /// The list, or nothing when it was never expanded or there are no entries.
  RawMetadataList* list() const { return list_; }
  /// The line shown instead of the list when there are no entries, once expanded.
  QLabel* emptyNote() const { return emptyNote_; }

 signals:
  void toggleRequested();

 private:
  RawMetadata entries_;  // a copy: the list is made only when first expanded
  QAbstractButton* header_ = nullptr;
  QWidget* body_ = nullptr;
  RawMetadataList* list_ = nullptr;
  QLabel* emptyNote_ = nullptr;
  bool expanded_ = false;
};

}  // namespace lumenscribe::app
