// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/progress_overlay.h"

#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/card.h"
#include "app/text_labels.h"
#include "app/theme.h"
#include "identity/formatters.h"

namespace lumenscribe::app {

namespace {

constexpr int kCardWidth = 320;
// The bar counts in thousandths: a QProgressBar holds ints, file sizes do not fit.
constexpr int kBarSteps = 1000;

QString bytesText(std::int64_t bytes) { return qText(byteCountText(bytes)); }

}  // namespace

ProgressOverlay::ProgressOverlay(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("progressOverlay"));
  setAttribute(Qt::WA_NoSystemBackground);
  setFocusPolicy(Qt::StrongFocus);
  auto* layout = new QVBoxLayout(this);
  auto* card = new Card(this);
  card->setObjectName(QStringLiteral("progressCard"));
  card->setFixedWidth(kCardWidth);
  auto* cardLayout = new QVBoxLayout(card);
  cardLayout->setContentsMargins(22, 18, 22, 16);
  cardLayout->setSpacing(8);
  auto* label = new QLabel(QStringLiteral("Inspecting file…"), card);
  label->setObjectName(QStringLiteral("progressLabel"));
  label->setAlignment(Qt::AlignCenter);
  label->setFont(scaledFont(font(), 1.05, QFont::DemiBold));
  cardLayout->addWidget(label);
  item_ = quietLabel(QString(), card);
  item_->setObjectName(QStringLiteral("progressItem"));
  item_->setAlignment(Qt::AlignCenter);
  item_->setWordWrap(false);
  cardLayout->addWidget(item_);
  bar_ = new QProgressBar(card);
  bar_->setTextVisible(false);
  bar_->setMaximumHeight(8);
  cardLayout->addWidget(bar_);
  count_ = quietLabel(QString(), card);
  count_->setObjectName(QStringLiteral("progressCount"));
  count_->setAlignment(Qt::AlignCenter);
  cardLayout->addWidget(count_);
  note_ = new QLabel(card);
  note_->setObjectName(QStringLiteral("busyNote"));
  note_->setWordWrap(true);
  note_->setAlignment(Qt::AlignCenter);
  note_->setFont(scaledFont(font(), 1.0, QFont::DemiBold));
  setTextColor(note_, accentColor(Accent::orange, palette()));
  cardLayout->addWidget(note_);
  cancel_ = new QPushButton(QStringLiteral("Cancel"), card);
  cancel_->setObjectName(QStringLiteral("cancelButton"));
  cancel_->setToolTip(QStringLiteral("Stop this inspection and go back (Esc)"));
  connect(cancel_, &QPushButton::clicked, this, &ProgressOverlay::cancelRequested);
  cardLayout->addSpacing(4);
  cardLayout->addWidget(cancel_, 0, Qt::AlignHCenter);
  layout->addWidget(card, 0, Qt::AlignCenter);
  setFocusProxy(cancel_);
  parent->installEventFilter(this);
  setGeometry(parent->rect());
  start(QString());
  hide();
}

void ProgressOverlay::start(const QString& itemName) {
  itemName_ = itemName;
  showItemName();
  entries_ = 0;
  bar_->setRange(0, 0);  // busy until there is something to count
  count_->hide();
  note_->hide();
}

void ProgressOverlay::showItemName() {
  const int room = kCardWidth - 44;
  item_->setText(item_->fontMetrics().elidedText(itemName_, Qt::ElideMiddle, room));
  item_->setToolTip(itemName_);
}

void ProgressOverlay::setProgress(std::int64_t entries) {
  entries_ = entries;
  count_->setText(QStringLiteral("%1 items so far").arg(entries));
  count_->setVisible(entries > 0);
}

void ProgressOverlay::setBytesRead(std::int64_t bytesRead, std::int64_t totalBytes) {
  if (entries_ > 0) return;  // a walk's count stays; a folder has no bytes of its own
  if (bytesRead <= 0 || totalBytes <= 0 || bytesRead >= totalBytes) {
    // Not begun, or done while the health check still reads: nothing more to say.
    bar_->setRange(0, 0);
    count_->hide();
    return;
  }
  bar_->setRange(0, kBarSteps);
  bar_->setValue(static_cast<int>(static_cast<double>(bytesRead) / totalBytes * kBarSteps));
  count_->setText(QStringLiteral("%1 of %2 read").arg(bytesText(bytesRead), bytesText(totalBytes)));
  count_->show();
}

void ProgressOverlay::showBusyNote() {
  note_->setText(QStringLiteral("One item at a time: cancel this one to inspect another."));
  note_->show();
}

bool ProgressOverlay::eventFilter(QObject* watched, QEvent* event) {
  if (watched == parent() && event->type() == QEvent::Resize) setGeometry(parentWidget()->rect());
  return QWidget::eventFilter(watched, event);
}

void ProgressOverlay::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), QColor(0, 0, 0, qRound(255 * 0.08)));
}

void ProgressOverlay::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    emit cancelRequested();
    return;
  }
  // Nothing reaches the screen underneath.
  event->accept();
}

// Tab stays on Cancel: the screen underneath cannot be used meanwhile.
bool ProgressOverlay::focusNextPrevChild(bool) { return true; }

void ProgressOverlay::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  showItemName();
}

}  // namespace lumenscribe::app
