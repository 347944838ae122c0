// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/progress_overlay.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QVBoxLayout>

#include "app/card.h"
#include "app/text_labels.h"

namespace lumenscribe::app {

ProgressOverlay::ProgressOverlay(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("progressOverlay"));
  setAttribute(Qt::WA_NoSystemBackground);
  auto* layout = new QVBoxLayout(this);
  auto* card = new Card(this);
  card->setFixedSize(260, 104);
  auto* cardLayout = new QVBoxLayout(card);
  cardLayout->setContentsMargins(22, 18, 22, 18);
  cardLayout->setSpacing(12);
  auto* bar = new QProgressBar(card);
  bar->setRange(0, 0);  // busy: the engine reports no progress
  bar->setTextVisible(false);
  bar->setMaximumHeight(8);
  cardLayout->addWidget(bar);
  auto* label = new QLabel(QStringLiteral("Inspecting file…"), card);
  label->setObjectName(QStringLiteral("progressLabel"));
  label->setAlignment(Qt::AlignCenter);
  cardLayout->addWidget(label);
  count_ = quietLabel(QString(), card);
  count_->setObjectName(QStringLiteral("progressCount"));
  count_->setAlignment(Qt::AlignCenter);
  count_->hide();
  cardLayout->addWidget(count_);
  layout->addWidget(card, 0, Qt::AlignCenter);
  parent->installEventFilter(this);
  setGeometry(parent->rect());
  hide();
}

void ProgressOverlay::setProgress(std::int64_t entries) {
  count_->setText(QStringLiteral("%1 items so far").arg(entries));
  count_->setVisible(entries > 0);
}

bool ProgressOverlay::eventFilter(QObject* watched, QEvent* event) {
  if (watched == parent() && event->type() == QEvent::Resize) setGeometry(parentWidget()->rect());
  return QWidget::eventFilter(watched, event);
}

void ProgressOverlay::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), QColor(0, 0, 0, qRound(255 * 0.08)));
}

}  // namespace lumenscribe::app
