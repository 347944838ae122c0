// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QFutureWatcher>
#include <QImage>
#include <QPixmap>
#include <QWidget>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/decoder_client.h"
#include "platform/opened_item.h"

namespace lumenscribe::app {

/// The preview of an opened item, made to fit `maxPixels` by the decoder worker: the file as
/// a picture, else page 0 of a PDF, else a null image (folders never get one; nor does a
/// file the decoder stopped on). Blocking; meant for a worker thread.
QImage loadPreviewImage(const platform::OpenedItem& item, platform::DecoderClient& decoder,
                        QSize maxPixels);

/// The top card's preview: the item's own picture when it has one, its kind icon otherwise.
/// Loading runs on a worker thread, from the very item that was inspected; the same item is
/// not loaded twice in a row.
class CachedFilePreview : public QWidget {
  Q_OBJECT

 public:
  explicit CachedFilePreview(QWidget* parent = nullptr);

  /// The decoder that pictures are made by; without one only icons are shown.
  void setDecoder(std::shared_ptr<platform::DecoderClient> decoder) {
    decoder_ = std::move(decoder);
  }
  /// Shows `item` (nothing: only the icon) with `fallbackSymbol` until its picture is ready.
  void setItem(std::shared_ptr<const platform::OpenedItem> item, std::string fallbackSymbol);
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
  std::shared_ptr<platform::DecoderClient> decoder_;
  QFutureWatcher<QImage> watcher_;
};

}  // namespace lumenscribe::app
