// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QFutureWatcher>
#include <QImage>
#include <QPixmap>
#include <QWidget>
#include <filesystem>
#include <optional>
#include <string>

namespace lumenscribe::app {

/// The preview of an item, made to fit `maxPixels`: the file decoded as an image, else page 0
/// of a PDF, else a null image (folders never get one). Blocking; meant for a worker thread.
QImage loadPreviewImage(const std::filesystem::path& path, bool isDirectory, QSize maxPixels);

/// The top card's preview: the item's own picture when it has one, its kind icon otherwise.
/// Loading runs on a worker thread; the same item is not loaded twice in a row.
class CachedFilePreview : public QWidget {
  Q_OBJECT

 public:
  explicit CachedFilePreview(QWidget* parent = nullptr);

  void setItem(const std::filesystem::path& url, std::string fallbackSymbol, bool isDirectory);
  /// Forgets the item, so that showing it again loads it afresh (it may have changed).
  void clear();

  const std::filesystem::path& url() const { return url_; }
  const std::string& fallbackSymbol() const { return fallbackSymbol_; }
  bool isDirectory() const { return isDirectory_; }
  const std::optional<QPixmap>& renderedPreview() const { return renderedPreview_; }
  const std::optional<std::filesystem::path>& loadedUrl() const { return loadedUrl_; }
  bool isLoading() const { return watcher_.isRunning(); }

  QSize sizeHint() const override;

 signals:
  /// A load finished (with or without a picture).
  void previewLoaded();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void showLoaded();

  std::filesystem::path url_;
  std::string fallbackSymbol_ = "doc.fill";
  bool isDirectory_ = false;
  std::optional<QPixmap> renderedPreview_;
  std::optional<std::filesystem::path> loadedUrl_;
  QFutureWatcher<QImage> watcher_;
};

}  // namespace lumenscribe::app
