// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/raw_metadata_block.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QPaintEvent>
#include <QPainter>
#include <QTextLayout>
#include <QVBoxLayout>

#include "app/focus_ring.h"
#include "app/icons.h"
#include "app/theme.h"

namespace lumenscribe::app {

namespace {

constexpr int kRowPaddingY = 6;
constexpr int kRowPaddingX = 10;
constexpr int kColumnGap = 16;
// Raw values can be whole XMP packets; the screen shows the start, the report keeps it all.
constexpr qsizetype kMaxShownCharacters = 2000;

QString shown(const std::string& text) {
  QString value = QString::fromStdString(text);
  if (value.size() > kMaxShownCharacters) value = value.left(kMaxShownCharacters) + QChar(0x2026);
  return value;
}

// Lays `text` out within `width` and returns the height it takes.
int layoutText(QTextLayout& layout, int width) {
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  layout.beginLayout();
  qreal y = 0;
  while (true) {
    QTextLine line = layout.createLine();
    if (!line.isValid()) break;
    line.setLineWidth(qMax(1, width));
    line.setPosition(QPointF(0, y));
    y += line.height();
  }
  layout.endLayout();
  return qCeil(y);
}

/// "Raw Metadata" with the entry count; clicking it expands or collapses the block.
class DisclosureHeader final : public QAbstractButton {
 public:
  DisclosureHeader(QString countText, QWidget* parent)
      : QAbstractButton(parent), countText_(std::move(countText)) {
    setText(QStringLiteral("Raw Metadata"));
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
  }

  QSize sizeHint() const override {
    const QFont title = scaledFont(font(), 1.1, QFont::DemiBold);
    return {QFontMetrics(title).horizontalAdvance(text()) + 200, QFontMetrics(title).height() + 20};
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse()) {
      painter.setPen(Qt::NoPen);
      painter.setBrush(withAlpha(palette().color(QPalette::WindowText), 0.04));
      painter.drawRoundedRect(QRectF(rect()).adjusted(2, 2, -2, -2), 10, 10);
    }
    if (hasFocus()) paintFocusRing(painter, QRectF(rect()), 10, palette());
    const QColor secondary = secondaryText(palette());
    const QRectF chevron(16, (height() - 14) / 2.0, 14, 14);
    painter.save();
    painter.translate(chevron.center());
    painter.rotate(isChecked() ? 90 : 0);
    painter.translate(-chevron.center());
    paintSymbol(painter, chevron, "chevron.right", secondary);
    painter.restore();
    painter.setFont(scaledFont(font(), 1.1, QFont::DemiBold));
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRect(40, 0, width() - 56, height()), Qt::AlignVCenter | Qt::AlignLeft,
                     text());
    painter.setFont(font());
    painter.setPen(secondary);
    painter.drawText(QRect(40, 0, width() - 58, height()), Qt::AlignVCenter | Qt::AlignRight,
                     countText_);
  }

 private:
  QString countText_;
};

}  // namespace

struct RawMetadataList::Row {
  std::unique_ptr<QTextLayout> key;
  std::unique_ptr<QTextLayout> value;
  int top = 0;
  int height = 0;
};

RawMetadataList::RawMetadataList(const RawMetadata& entries, QWidget* parent) : QWidget(parent) {
  entries_.reserve(entries.size());
  for (const auto& [key, value] : entries) entries_.emplace_back(shown(key), shown(value));
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

RawMetadataList::~RawMetadataList() = default;

std::pair<QString, QString> RawMetadataList::entry(int index) const {
  return entries_.at(static_cast<std::size_t>(index));
}

void RawMetadataList::layoutRows(int width) const {
  if (width == laidOutWidth_) return;
  laidOutWidth_ = width;
  const int keyWidth = qBound(120, width * 36 / 100, 300);
  const int valueWidth = qMax(60, width - keyWidth - kColumnGap - 2 * kRowPaddingX);
  QFont keyFont = font();
  keyFont.setWeight(QFont::Medium);
  rows_.resize(entries_.size());
  int top = 0;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    Row& row = rows_[i];
    if (!row.key) {
      row.key = std::make_unique<QTextLayout>(entries_[i].first, keyFont);
      row.value = std::make_unique<QTextLayout>(entries_[i].second, font());
    }
    const int keyHeight = layoutText(*row.key, keyWidth);
    const int valueHeight = layoutText(*row.value, valueWidth);
    row.top = top;
    row.height = qMax(keyHeight, valueHeight) + 2 * kRowPaddingY;
    top += row.height;
  }
  totalHeight_ = top;
}

int RawMetadataList::heightForWidth(int width) const {
  layoutRows(width);
  return totalHeight_;
}

QSize RawMetadataList::sizeHint() const {
  const int width = laidOutWidth_ > 0 ? laidOutWidth_ : 600;
  return {width, heightForWidth(width)};
}

void RawMetadataList::resizeEvent(QResizeEvent* event) {
  layoutRows(width());
  QWidget::resizeEvent(event);
}

void RawMetadataList::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) {
    rows_.clear();
    laidOutWidth_ = -1;
    updateGeometry();
  }
  QWidget::changeEvent(event);
}

int RawMetadataList::rowAt(int y) const {
  const auto found = std::upper_bound(rows_.begin(), rows_.end(), y,
                                      [](int value, const Row& row) { return value < row.top; });
  return found == rows_.begin() ? -1 : static_cast<int>(found - rows_.begin()) - 1;
}

void RawMetadataList::paintEvent(QPaintEvent* event) {
  layoutRows(width());
  QPainter painter(this);
  const int keyWidth = qBound(120, width() * 36 / 100, 300);
  const QColor stripe = withAlpha(palette().color(QPalette::WindowText), 0.035);
  const QColor keyColor = secondaryText(palette());
  const QColor valueColor = palette().color(QPalette::WindowText);
  const QRect exposed = event->rect();
  for (int i = qMax(0, rowAt(exposed.top())); i < static_cast<int>(rows_.size()); ++i) {
    const Row& row = rows_[static_cast<std::size_t>(i)];
    if (row.top > exposed.bottom()) break;
    if (i % 2 == 0) painter.fillRect(QRect(0, row.top, width(), row.height), stripe);
    painter.setPen(keyColor);
    row.key->draw(&painter, QPointF(kRowPaddingX, row.top + kRowPaddingY));
    painter.setPen(valueColor);
    row.value->draw(&painter,
                    QPointF(kRowPaddingX + keyWidth + kColumnGap, row.top + kRowPaddingY));
  }
}

void RawMetadataList::contextMenuEvent(QContextMenuEvent* event) {
  const int index = rowAt(event->pos().y());
  if (index < 0 || index >= entryCount()) return;
  const auto [key, value] = entry(index);
  QMenu menu(this);
  menu.addAction(QStringLiteral("Copy Value"), this,
                 [value] { QApplication::clipboard()->setText(value); });
  menu.addAction(QStringLiteral("Copy Key and Value"), this, [key, value] {
    QApplication::clipboard()->setText(key + QStringLiteral(": ") + value);
  });
  menu.exec(event->globalPos());
}

RawMetadataBlock::RawMetadataBlock(const RawMetadata& entries, QWidget* parent)
    : Card(parent), entries_(entries) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->setSpacing(0);
  header_ = new DisclosureHeader(QStringLiteral("%1 entries").arg(entries_.size()), this);
  header_->setObjectName(QStringLiteral("rawMetadataHeader"));
  connect(header_, &QAbstractButton::clicked, this, [this] {
    header_->setChecked(expanded_);  // the window decides; setExpanded follows
    emit toggleRequested();
  });
  layout->addWidget(header_);
  body_ = new QWidget(this);
  auto* bodyLayout = new QVBoxLayout(body_);
  bodyLayout->setContentsMargins(12, 4, 12, 12);
  body_->hide();
  layout->addWidget(body_);
}

void RawMetadataBlock::setExpanded(bool expanded) {
  expanded_ = expanded;
  header_->setChecked(expanded);
  if (expanded && !list_ && !emptyNote_) {
    if (entries_.empty()) {
      emptyNote_ = new QLabel(QStringLiteral("No additional metadata was found."), body_);
      QPalette quiet = emptyNote_->palette();
      quiet.setColor(QPalette::WindowText, secondaryText(palette()));
      emptyNote_->setPalette(quiet);
      body_->layout()->addWidget(emptyNote_);
    } else {
      list_ = new RawMetadataList(entries_, body_);
      list_->setObjectName(QStringLiteral("rawMetadataList"));
      body_->layout()->addWidget(list_);
    }
  }
  body_->setVisible(expanded);
}

}  // namespace lumenscribe::app
