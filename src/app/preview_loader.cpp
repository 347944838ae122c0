// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/preview_loader.h"

#include <QPainter>
#include <QPainterPath>
#include <QtConcurrent/QtConcurrentRun>

#include "app/icons.h"
#include "app/theme.h"
#include "core/path_text.h"

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

QImage toQImage(const platform::decoder::RgbaImage& image) {
  const QImage view(image.pixels.data(), image.width, image.height, image.width * 4,
                    QImage::Format_RGBA8888);
  return view.copy();
}

platform::decoder::PreviewBox boxOf(QSize size) { return {size.width(), size.height()}; }

}  // namespace

QImage loadPreviewImage(const platform::OpenedItem& item, platform::DecoderClient& decoder,
                        QSize maxPixels) {
  if (item.facts().isDirectory || !item.isReadable() || item.size() == 0 || maxPixels.isEmpty()) {
    return {};
  }
  // The content decides, not the name: a picture named .pdf is still shown as a picture.
  const auto picture = decoder.picturePreview(item, boxOf(maxPixels));
  if (picture && *picture) return fitted(toQImage(**picture), maxPixels);
  const bool pdf = (item.contentType() && item.contentType()->conformsTo(AbstractType::pdf)) ||
                   asciiLower(pathExtension(item.url())) == "pdf";
  // A decoder that stopped on the file is not asked again for its first page.
  if (!picture || !pdf) return {};
  const auto page = decoder.pdfFirstPage(item, boxOf(kPdfThumbnail));
  if (!page || !*page) return {};
  return fitted(toQImage(**page), maxPixels);
}

CachedFilePreview::CachedFilePreview(QWidget* parent) : QWidget(parent) {
  setFixedSize(kPreviewBox);
  connect(&watcher_, &QFutureWatcher<QImage>::finished, this, &CachedFilePreview::showLoaded);
}

QSize CachedFilePreview::sizeHint() const { return kPreviewBox; }

void CachedFilePreview::setItem(std::shared_ptr<const platform::OpenedItem> item,
                                std::string fallbackSymbol) {
  url_ = item ? item->url() : std::filesystem::path();
  fallbackSymbol_ = std::move(fallbackSymbol);
  isDirectory_ = item && item->facts().isDirectory;
  update();
  if (loadedUrl_ == url_) return;
  loadedUrl_ = url_;
  renderedPreview_.reset();
  if (!item || isDirectory_ || !decoder_) {
    watcher_.setFuture(QFuture<QImage>());
    return;
  }
  const QSize maxPixels = kPreviewBox * devicePixelRatioF();
  // The task shares ownership of what it reads: it may outlive this widget.
  watcher_.setFuture(QtConcurrent::run([item, decoder = decoder_, maxPixels] {
    return loadPreviewImage(*item, *decoder, maxPixels);
  }));
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
