// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/preview_loader.h"

#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <QtConcurrent/QtConcurrentRun>

#include "app/icons.h"
#include "app/theme.h"
#include "core/path_text.h"
#include "platform/pdf_document.h"

namespace lumenscribe::app {

namespace {

constexpr QSize kPreviewBox{150, 110};
// PDF thumbnails are made at this size, then fitted to the box like any other picture.
constexpr QSize kPdfThumbnail{300, 220};

QImage fitted(QImage image, QSize maxPixels) {
  if (image.isNull()) return image;
  if (image.width() > maxPixels.width() || image.height() > maxPixels.height()) {
    image = image.scaled(maxPixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  }
  return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QImage decodeImage(const std::filesystem::path& path, QSize maxPixels) {
  QImageReader reader(QFile::decodeName(path.c_str()));
  // Like the platform's image loader: the content decides, not the name.
  reader.setDecideFormatFromContent(true);
  reader.setAutoTransform(true);
  const QSize stored = reader.size();
  if (stored.isValid() && !stored.isEmpty()) {
    // The scaled size applies before the orientation is corrected.
    QSize box = maxPixels;
    if (reader.transformation() & QImageIOHandler::TransformationRotate90) box.transpose();
    if (stored.width() > box.width() || stored.height() > box.height()) {
      reader.setScaledSize(stored.scaled(box, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    }
  }
  return reader.read();
}

QImage renderPdf(const std::filesystem::path& path) {
  const auto page =
      platform::renderPdfFirstPage(path, kPdfThumbnail.width(), kPdfThumbnail.height());
  if (!page) return {};
  const QImage view(page->pixels.data(), page->width, page->height, page->width * 4,
                    QImage::Format_RGBA8888);
  return view.copy();
}

}  // namespace

QImage loadPreviewImage(const std::filesystem::path& path, bool isDirectory, QSize maxPixels) {
  if (isDirectory || maxPixels.isEmpty()) return {};
  QImage image = decodeImage(path, maxPixels);
  if (image.isNull() && asciiLower(pathExtension(path)) == "pdf") image = renderPdf(path);
  return fitted(std::move(image), maxPixels);
}

CachedFilePreview::CachedFilePreview(QWidget* parent) : QWidget(parent) {
  setFixedSize(kPreviewBox);
  connect(&watcher_, &QFutureWatcher<QImage>::finished, this, &CachedFilePreview::showLoaded);
}

QSize CachedFilePreview::sizeHint() const { return kPreviewBox; }

void CachedFilePreview::setItem(const std::filesystem::path& url, std::string fallbackSymbol,
                                bool isDirectory) {
  url_ = url;
  fallbackSymbol_ = std::move(fallbackSymbol);
  isDirectory_ = isDirectory;
  update();
  if (loadedUrl_ == url_) return;
  loadedUrl_ = url_;
  renderedPreview_.reset();
  if (isDirectory_) {
    watcher_.setFuture(QFuture<QImage>());
    return;
  }
  const QSize maxPixels = kPreviewBox * devicePixelRatioF();
  // The task gets copies only: it may outlive this widget.
  watcher_.setFuture(QtConcurrent::run(
      [path = url_, maxPixels] { return loadPreviewImage(path, false, maxPixels); }));
}

void CachedFilePreview::clear() {
  watcher_.setFuture(QFuture<QImage>());
  url_.clear();
  fallbackSymbol_ = "doc.fill";
  isDirectory_ = false;
  renderedPreview_.reset();
  loadedUrl_.reset();
  update();
}

void CachedFilePreview::showLoaded() {
  const QFuture<QImage> future = watcher_.future();
  if (future.resultCount() > 0) {
    const QImage image = future.result();
    if (!image.isNull()) {
      QPixmap pixmap = QPixmap::fromImage(image);
      pixmap.setDevicePixelRatio(devicePixelRatioF());
      renderedPreview_ = std::move(pixmap);
    }
  }
  update();
  emit previewLoaded();
}

void CachedFilePreview::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF bounds = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  QPainterPath frame;
  frame.addRoundedRect(bounds, 12, 12);
  const QColor accent = accentColor(Accent::blue, palette());
  if (renderedPreview_) {
    painter.fillPath(frame, withAlpha(palette().color(QPalette::WindowText), 0.05));
    const QSizeF size = renderedPreview_->deviceIndependentSize();
    const QPointF origin((width() - size.width()) / 2.0, (height() - size.height()) / 2.0);
    QPainterPath clip;
    clip.addRoundedRect(QRectF(origin, size), 10, 10);
    painter.setClipPath(clip);
    painter.drawPixmap(origin, *renderedPreview_);
    painter.setClipping(false);
  } else {
    painter.fillPath(frame, withAlpha(accent, 0.10));
    const qreal side = 52;
    paintSymbol(painter, QRectF((width() - side) / 2.0, (height() - side) / 2.0, side, side),
                fallbackSymbol_, accent);
  }
  painter.setPen(QPen(cardOutline(palette()), 1.0));
  painter.drawPath(frame);
}

}  // namespace lumenscribe::app
