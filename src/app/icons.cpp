// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/icons.h"

#include <QAbstractButton>
#include <QFile>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include "app/icon_map.h"

namespace lumenscribe::app {

namespace {

QString resourcePath(std::string_view symbolName) {
  const std::string_view lucide = lucideNameFor(symbolName);
  return QLatin1String(lucideResourcePrefix()) +
         QString::fromLatin1(lucide.data(), static_cast<qsizetype>(lucide.size())) +
         QLatin1String(".svg");
}

// Lucide icons stroke with currentColor; naming the colour is all it takes to tint them.
QByteArray tintedSvg(std::string_view symbolName, const QColor& color) {
  QFile file(resourcePath(symbolName));
  if (!file.open(QIODevice::ReadOnly)) return {};
  QByteArray svg = file.readAll();
  svg.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
  return svg;
}

void render(QPainter& painter, const QRectF& target, const QByteArray& svg, qreal opacity) {
  QSvgRenderer renderer(svg);
  if (!renderer.isValid()) return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(painter.opacity() * opacity);
  renderer.render(&painter, target);
  painter.restore();
}

class SymbolIconEngine final : public QIconEngine {
 public:
  SymbolIconEngine(QByteArray svg, qreal opacity) : svg_(std::move(svg)), opacity_(opacity) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    render(*painter, rect, svg_, mode == QIcon::Disabled ? opacity_ * 0.4 : opacity_);
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
      QPainter painter(&image);
      paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    }
    return QPixmap::fromImage(std::move(image));
  }

  QIconEngine* clone() const override { return new SymbolIconEngine(svg_, opacity_); }

 private:
  QByteArray svg_;
  qreal opacity_;
};

}  // namespace

QIcon symbolIcon(std::string_view symbolName, const QColor& color) {
  return QIcon(new SymbolIconEngine(tintedSvg(symbolName, color), color.alphaF()));
}

QPixmap symbolPixmap(std::string_view symbolName, const QColor& color, int logicalSize,
                     qreal devicePixelRatio) {
  const int side = qMax(1, qRound(logicalSize * devicePixelRatio));
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  {
    QPainter painter(&image);
    render(painter, QRectF(0, 0, side, side), tintedSvg(symbolName, color), color.alphaF());
  }
  QPixmap pixmap = QPixmap::fromImage(std::move(image));
  pixmap.setDevicePixelRatio(devicePixelRatio);
  return pixmap;
}

void paintSymbol(QPainter& painter, const QRectF& target, std::string_view symbolName,
                 const QColor& color) {
  render(painter, target, tintedSvg(symbolName, color), color.alphaF());
}

namespace {
constexpr const char* kSymbolProperty = "lumenscribeSymbol";
}

void setButtonSymbol(QAbstractButton* button, std::string_view symbolName) {
  const QByteArray name(symbolName.data(), static_cast<qsizetype>(symbolName.size()));
  button->setProperty(kSymbolProperty, name);
  button->setIcon(symbolIcon(symbolName, button->palette().color(QPalette::ButtonText)));
}

void refreshButtonSymbols(QWidget* root) {
  for (QAbstractButton* button : root->findChildren<QAbstractButton*>()) {
    const QByteArray name = button->property(kSymbolProperty).toByteArray();
    if (!name.isEmpty()) setButtonSymbol(button, std::string_view(name.constData(), name.size()));
  }
}

bool hasSymbolIcon(std::string_view symbolName) { return QFile::exists(resourcePath(symbolName)); }

}  // namespace lumenscribe::app
