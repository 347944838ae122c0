// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/result_screen.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QProgressBar>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include "app/card.h"
#include "app/flow_layout.h"
#include "app/icons.h"
#include "app/pills.h"
#include "app/preview_loader.h"
#include "app/privacy_card.h"
#include "app/raw_metadata_block.h"
#include "app/section_card.h"
#include "app/text_labels.h"
#include "app/theme.h"
#include "privacy/privacy_summary.h"

namespace lumenscribe::app {

namespace {

constexpr int kColumnMaxWidth = 1080;
constexpr int kReturnToTopThreshold = 480;
constexpr int kAnchorMargin = 12;
constexpr int kReturnToTopBottom = 20;  // its distance from the bottom edge
constexpr int kReturnToTopRight = 32;

QString anchorName(std::string_view anchor) { return qText(anchor); }

/// Marks the whole result screen while a drag of a file is over the window: dropping there
/// inspects the item as on the drop screen. It lets the pointer through.
class DropHighlight final : public QWidget {
 public:
  explicit DropHighlight(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("dropHighlight"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = accentColor(Accent::system, palette());
    QPainterPath frame;
    frame.addRoundedRect(QRectF(rect()).adjusted(6, 6, -6, -6), 16, 16);
    painter.fillPath(frame, withAlpha(accent, 0.08));
    painter.setPen(QPen(accent, 2.5));
    painter.drawPath(frame);

    const QFont words = scaledFont(font(), 1.3, QFont::DemiBold);
    const QString text = QStringLiteral("Drop it here");
    const int iconSide = 24;
    const QSize plate(QFontMetrics(words).horizontalAdvance(text) + iconSide + 8 + 40,
                      QFontMetrics(words).height() + 24);
    const QRectF plateRect(
        QPointF((width() - plate.width()) / 2.0, (height() - plate.height()) / 2.0), plate);
    QPainterPath capsule;
    capsule.addRoundedRect(plateRect, plateRect.height() / 2, plateRect.height() / 2);
    painter.fillPath(capsule, cardFill(palette()));
    painter.setPen(QPen(accent, 1.5));
    painter.drawPath(capsule);
    paintSymbol(
        painter,
        QRectF(plateRect.left() + 20, plateRect.center().y() - iconSide / 2.0, iconSide, iconSide),
        "tray.and.arrow.down", accent);
    painter.setFont(words);
    painter.drawText(plateRect.adjusted(20 + iconSide + 8, 0, -20, 0),
                     Qt::AlignVCenter | Qt::AlignLeft, text);
  }
};

QPushButton* makeActionButton(const QString& text, std::string_view symbol, const QString& help,
                              QWidget* parent) {
  auto* button = new QPushButton(text, parent);
  setButtonSymbol(button, symbol);
  button->setToolTip(help);
  button->setCursor(Qt::PointingHandCursor);
  return button;
}

}  // namespace

ResultScreen::ResultScreen(QWidget* parent) : QWidget(parent) {
  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(0, 0, 0, 0);
  scroll_ = new QScrollArea(this);
  scroll_->setObjectName(QStringLiteral("resultScroll"));
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setWidgetResizable(true);
  scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  // It holds the focus when a result appears, so that the keys scroll at once; Tab never
  // comes back to it, for it could show no focus of its own.
  scroll_->setFocusPolicy(Qt::NoFocus);
  outer->addWidget(scroll_);

  auto* content = new QWidget;
  content->setAutoFillBackground(false);
  auto* centering = new QHBoxLayout(content);
  centering->setContentsMargins(24, 20, 24, 28);
  column_ = new QWidget(content);
  column_->setMaximumWidth(kColumnMaxWidth);
  centering->addStretch(0);
  centering->addWidget(column_, 1);
  centering->addStretch(0);
  auto* column = new QVBoxLayout(column_);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(14);
  buildTopCard(column);
  body_ = new QWidget(column_);
  new QVBoxLayout(body_);
  body_->layout()->setContentsMargins(0, 0, 0, 0);
  body_->layout()->setSpacing(14);
  column->addWidget(body_);
  column->addStretch(1);
  scroll_->setWidget(content);
  scroll_->viewport()->setAutoFillBackground(false);
  content->setAutoFillBackground(false);

  scrollAnimation_ = new QPropertyAnimation(scroll_->verticalScrollBar(), "value", this);
  scrollAnimation_->setDuration(260);
  scrollAnimation_->setEasingCurve(QEasingCurve::OutCubic);

  returnToTop_ = new PillButton(QStringLiteral("Return to Top"), "arrow.up", Accent::system, this);
  returnToTop_->setObjectName(QStringLiteral("returnToTop"));
  returnToTop_->setOpaque(true);
  returnToTop_->setToolTip(QStringLiteral("Return to the top of the inspection"));
  returnToTop_->hide();
  connect(returnToTop_, &QAbstractButton::clicked, this,
          [this] { scrollToAnchor(anchorName(kPageTopAnchor)); });
  connect(returnToTop_, &PillButton::hoverChanged, this, &ResultScreen::returnToTopHovered);
  // Room under the last card for the floating button, so that at the end of the page it
  // covers nothing (the raw-metadata count is at the right, where it floats).
  centering->setContentsMargins(24, 20, 24,
                                kReturnToTopBottom + returnToTop_->sizeHint().height() + 12);
  dropHighlight_ = new DropHighlight(this);

  connect(scroll_->verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
    const bool wanted = value > kReturnToTopThreshold;
    if (wanted == returnToTopWanted_) return;
    returnToTopWanted_ = wanted;
    emit returnToTopWanted(wanted);
  });
}

void ResultScreen::buildTopCard(QVBoxLayout* column) {
  topCard_ = new Card(column_);
  topCard_->setObjectName(anchorName(kPageTopAnchor));
  topCard_->setHoverHighlight(true);
  connect(topCard_, &Card::hoverChanged, this, &ResultScreen::topCardHovered);
  auto* layout = new QHBoxLayout(topCard_);
  layout->setContentsMargins(18, 18, 18, 18);
  layout->setSpacing(20);
  preview_ = new CachedFilePreview(topCard_);
  layout->addWidget(preview_, 0, Qt::AlignTop);

  auto* info = new QVBoxLayout;
  info->setSpacing(4);
  name_ = new WrappedText(QString(), topCard_);
  name_->setObjectName(QStringLiteral("displayName"));
  name_->setFont(scaledFont(font(), 1.55, QFont::Bold));
  info->addWidget(name_);
  type_ = quietLabel(QString(), topCard_);
  type_->setObjectName(QStringLiteral("typeDescription"));
  type_->setFont(scaledFont(font(), 1.08));
  info->addWidget(type_);
  auto* facts = new QHBoxLayout;
  facts->setSpacing(10);
  details_ = quietLabel(QString(), topCard_);
  details_->setObjectName(QStringLiteral("detailCount"));
  details_->setWordWrap(false);
  facts->addWidget(details_);
  facts->addWidget(new Badge(QStringLiteral("Local"), Accent::green, topCard_));
  facts->addStretch(1);
  activity_ = new QWidget(topCard_);
  activity_->setObjectName(QStringLiteral("activity"));
  auto* activity = new QHBoxLayout(activity_);
  activity->setContentsMargins(0, 0, 0, 0);
  activity->setSpacing(8);
  auto* busy = new QProgressBar(activity_);
  busy->setRange(0, 0);  // busy: comparisons and copies report no progress
  busy->setTextVisible(false);
  busy->setFixedSize(72, 6);
  activity->addWidget(busy, 0, Qt::AlignVCenter);
  activityText_ = quietLabel(QString(), activity_);
  activityText_->setObjectName(QStringLiteral("activityText"));
  activityText_->setWordWrap(true);
  activity->addWidget(activityText_);
  activity_->hide();
  // Beside the facts, where it moves nothing when it comes and goes.
  facts->addWidget(activity_);
  info->addLayout(facts);
  info->addStretch(1);

  auto* actionsHost = new QWidget(topCard_);
  actionsHost->setObjectName(QStringLiteral("actions"));
  auto* actions = new FlowLayout(actionsHost, 8);
  actions->setRightAligned(true);
  compare_ = makeActionButton(QStringLiteral("Compare"), "arrow.left.arrow.right",
                              QStringLiteral("Compare this file with another file"), topCard_);
  cleanCopy_ = makeActionButton(
      QStringLiteral("Create Clean Copy"), "sparkles",
      QStringLiteral("Save a copy of this image with privacy metadata removed"), topCard_);
  cleanCopy_->setFont(scaledFont(font(), 0.95, QFont::DemiBold));
  cleanCopy_->hide();
  saveReport_ =
      makeActionButton(QStringLiteral("Save Report"), "square.and.arrow.down", QString(), topCard_);
  auto* another = makeActionButton(QStringLiteral("Inspect Another File"), "arrow.counterclockwise",
                                   QString(), topCard_);
  another->setDefault(true);
  another->setToolTip(QStringLiteral("Back to the drop screen (Esc)"));
  inspectAnother_ = another;
  connect(compare_, &QPushButton::clicked, this, &ResultScreen::compareRequested);
  connect(cleanCopy_, &QPushButton::clicked, this, &ResultScreen::cleanCopyRequested);
  connect(saveReport_, &QPushButton::clicked, this, &ResultScreen::saveReportRequested);
  connect(another, &QPushButton::clicked, this, &ResultScreen::inspectAnotherRequested);
  for (QPushButton* button : {compare_, cleanCopy_, saveReport_, another}) {
    button->setParent(actionsHost);
    actions->addWidget(button);
  }
  info->addSpacing(10);
  info->addWidget(actionsHost);

  layout->addLayout(info, 1);
  column->addWidget(topCard_);
}

QPushButton* ResultScreen::actionButton(const QString& text) const {
  for (QPushButton* button : topCard_->findChildren<QPushButton*>()) {
    if (button->text() == text) return button;
  }
  return nullptr;
}

void ResultScreen::setActionRunning(ResultAction action, bool running) {
  running_[static_cast<int>(action)] = running;
  switch (action) {
    case ResultAction::compare: compare_->setEnabled(!running && !presentation_.isDirectory); break;
    case ResultAction::cleanCopy: cleanCopy_->setEnabled(!running); break;
    case ResultAction::saveReport: saveReport_->setEnabled(!running); break;
  }
}

void ResultScreen::setActivity(const QString& text) {
  activityText_->setText(text);
  activity_->setVisible(!text.isEmpty());
}

void ResultScreen::showResult(const LumenscribeResult& result,
                              const ResultPresentation& presentation) {
  result_ = result;
  presentation_ = presentation;
  name_->setText(qText(result.displayName));
  type_->setText(qText(result.typeDescription));
  details_->setText(QStringLiteral("%1 details").arg(result.summaryCount));
  preview_->setItem(presentation.item, presentation.previewSymbol);
  cleanCopy_->setVisible(presentation.canMakeCleanCopy);
  // A folder has no bytes of its own to compare.
  compare_->setEnabled(!presentation.isDirectory &&
                       !running_[static_cast<int>(ResultAction::compare)]);
  rebuild();
  scrollAnimation_->stop();
  scroll_->verticalScrollBar()->setValue(0);
}

void ResultScreen::rebuild() {
  if (!result_) return;
  QLayout* layout = body_->layout();
  while (QLayoutItem* item = layout->takeAt(0)) {
    delete item->widget();
    delete item;
  }
  severityPills_.clear();
  summaryPills_.clear();

  layout->addWidget(buildSummaryCard(body_));
  layout->addWidget(buildRevealsCard(body_));
  for (const InsightSection& section : result_->sections) {
    const auto kind = detailKindFor(section.title);
    const bool expanded = kind == DetailKind::camera  ? presentation_.showCameraDetails
                          : kind == DetailKind::video ? presentation_.showVideoDetails
                                                      : false;
    auto* card = new SectionCard(section, expanded, body_);
    connect(card, &SectionCard::detailsToggleRequested, this,
            &ResultScreen::detailsToggleRequested);
    connect(card, &SectionCard::inspectFurtherRequested, this,
            [this, card] { emit inspectFurtherRequested(card->section()); });
    connect(card, &SectionCard::detailButtonHoverChanged, this, [this, card](bool hovered) {
      emit diveDeeperHovered(hovered ? std::optional(qText(card->section().title)) : std::nullopt);
    });
    layout->addWidget(card);
  }
  privacyCard_ = new PrivacyCard(result_->privacyFindings, body_);
  layout->addWidget(privacyCard_);
  rawBlock_ = new RawMetadataBlock(result_->rawMetadata, body_);
  rawBlock_->setObjectName(QStringLiteral("rawMetadata"));
  rawBlock_->setExpanded(presentation_.showRawMetadata);
  connect(rawBlock_, &RawMetadataBlock::toggleRequested, this,
          &ResultScreen::rawMetadataToggleRequested);
  layout->addWidget(rawBlock_);
  orderTabStops();
}

QWidget* ResultScreen::buildSummaryCard(QWidget* parent) {
  auto* card = new Card(parent);
  card->setObjectName(QStringLiteral("inspectionSummary"));
  auto* layout = new QVBoxLayout(card);
  layout->setContentsMargins(18, 14, 18, 16);
  layout->setSpacing(8);
  auto* heading = quietLabel(QStringLiteral("Inspection Summary"), card);
  heading->setFont(scaledFont(font(), 0.95, QFont::DemiBold));
  layout->addWidget(heading);

  const Verdict verdict = verdictFor(result_->privacyFindings);
  const Accent accent = accentForVerdict(verdict.level);
  const std::string_view symbol = verdict.level == VerdictLevel::info ? "checkmark.circle.fill"
                                  : verdict.level == VerdictLevel::caution
                                      ? "info.circle.fill"
                                      : "exclamationmark.triangle.fill";
  auto* row = new QHBoxLayout;
  row->setSpacing(10);
  row->addWidget(new SymbolView(std::string(symbol), accent, 26, card));
  verdict_ = new QLabel(qText(verdict.text), card);
  verdict_->setObjectName(QStringLiteral("verdict"));
  verdict_->setFont(scaledFont(font(), 1.35, QFont::Bold));
  verdict_->setWordWrap(true);
  setTextColor(verdict_, accentColor(accent, palette()));
  row->addWidget(verdict_, 1);

  const SeverityCounts counts = severityCounts(result_->privacyFindings);
  for (const PrivacyLevel level :
       {PrivacyLevel::neutral, PrivacyLevel::notice, PrivacyLevel::sensitive}) {
    const std::int64_t count = counts.of(level);
    auto* pill = new PillButton(qText(countLabel(level)), "", accentForLevel(level), card);
    pill->setCount(count);
    pill->setMuted(count == 0);
    pill->setToolTip(QString::fromStdString(severityHelpText(level, count)));
    if (count > 0) {
      connect(pill, &QAbstractButton::clicked, this,
              [this] { scrollToAnchor(anchorName(kSharingPrivacyAnchor)); });
    }
    connect(pill, &PillButton::hoverChanged, this, [this, level](bool hovered) {
      emit severityHovered(hovered ? std::optional(level) : std::nullopt);
    });
    severityPills_ << pill;
    row->addWidget(pill);
  }
  layout->addLayout(row);
  return card;
}

QWidget* ResultScreen::buildRevealsCard(QWidget* parent) {
  auto* card = new Card(parent);
  card->setObjectName(QStringLiteral("reveals"));
  auto* layout = new QVBoxLayout(card);
  layout->setContentsMargins(18, 14, 18, 16);
  layout->setSpacing(10);
  auto* heading = new QHBoxLayout;
  auto* title = new QLabel(QStringLiteral("What this file reveals:"), card);
  title->setFont(scaledFont(font(), 1.05, QFont::DemiBold));
  heading->addWidget(title);
  heading->addStretch(1);
  heading->addWidget(quietLabel(QStringLiteral("Click to Explore"), card));
  layout->addLayout(heading);

  auto* pills = new QWidget(card);
  pills->setToolTip(QStringLiteral("Click to Explore"));
  auto* flow = new FlowLayout(pills, 8);
  for (const std::string& item : result_->summaryItems) {
    const QString text = qText(item);
    const std::string_view target = pillTarget(result_->sections, item);
    const auto section = std::find_if(result_->sections.begin(), result_->sections.end(),
                                      [&](const InsightSection& s) { return s.title == item; });
    const Accent accent =
        section == result_->sections.end() ? accentForSection(item) : accentForCard(*section);
    auto* pill = new PillButton(text, "", accent, pills);
    pill->setToolTip(QStringLiteral("Jump to %1").arg(text));
    const QString anchor = QString::fromStdString(sectionAnchor(target));
    connect(pill, &QAbstractButton::clicked, this, [this, anchor] { scrollToAnchor(anchor); });
    connect(pill, &PillButton::hoverChanged, this, [this, text](bool hovered) {
      emit insightPillHovered(hovered ? std::optional(text) : std::nullopt);
    });
    summaryPills_ << pill;
    flow->addWidget(pill);
  }
  layout->addWidget(pills);
  return card;
}

void ResultScreen::setRawMetadataShown(bool shown) {
  if (rawBlock_) rawBlock_->setExpanded(shown);
  presentation_.showRawMetadata = shown;
}

void ResultScreen::setDetailsShown(DetailKind kind, bool shown) {
  (kind == DetailKind::camera ? presentation_.showCameraDetails : presentation_.showVideoDetails) =
      shown;
  for (SectionCard* card : sectionCards()) {
    if (card->detailKind() == kind) card->setDetailsExpanded(shown);
  }
}

QWidget* ResultScreen::anchorWidget(const QString& anchor) const {
  if (anchor == anchorName(kPageTopAnchor)) return topCard_;
  return body_->findChild<QWidget*>(anchor, Qt::FindDirectChildrenOnly);
}

bool ResultScreen::scrollToAnchor(const QString& anchor, bool animated) {
  QWidget* target = anchorWidget(anchor);
  if (!target) return false;
  QScrollBar* bar = scroll_->verticalScrollBar();
  const int y =
      target == topCard_ ? 0 : target->mapTo(scroll_->widget(), QPoint(0, 0)).y() - kAnchorMargin;
  const int value = qBound(bar->minimum(), y, bar->maximum());
  scrollAnimation_->stop();
  if (!animated) {
    bar->setValue(value);
    return true;
  }
  scrollAnimation_->setStartValue(bar->value());
  scrollAnimation_->setEndValue(value);
  scrollAnimation_->start();
  return true;
}

QList<SectionCard*> ResultScreen::sectionCards() const {
  return body_->findChildren<SectionCard*>(QString(), Qt::FindDirectChildrenOnly);
}

SectionCard* ResultScreen::sectionCard(const QString& title) const {
  for (SectionCard* card : sectionCards()) {
    if (qText(card->section().title) == title) return card;
  }
  return nullptr;
}

void ResultScreen::setReturnToTopShown(bool shown) {
  returnToTop_->setVisible(shown);
  if (shown) {
    placeReturnToTop();
    returnToTop_->raise();
  }
}

void ResultScreen::placeReturnToTop() {
  const QSize hint = returnToTop_->sizeHint();
  returnToTop_->setGeometry(width() - hint.width() - kReturnToTopRight,
                            height() - hint.height() - kReturnToTopBottom, hint.width(),
                            hint.height());
}

void ResultScreen::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  placeReturnToTop();
  dropHighlight_->setGeometry(rect());
}

void ResultScreen::setTargeted(bool targeted) {
  dropHighlight_->setVisible(targeted);
  if (targeted) {
    dropHighlight_->setGeometry(rect());
    dropHighlight_->raise();
  }
}

bool ResultScreen::isTargeted() const { return dropHighlight_->isVisible(); }

void ResultScreen::focusStart() { scroll_->setFocus(Qt::OtherFocusReason); }

void ResultScreen::keyPressEvent(QKeyEvent* event) {
  // What the scroll area leaves: Home and End, and the page keys from a focused button.
  QScrollBar* bar = scroll_->verticalScrollBar();
  if (event->matches(QKeySequence::MoveToStartOfDocument) || event->key() == Qt::Key_Home) {
    bar->triggerAction(QAbstractSlider::SliderToMinimum);
  } else if (event->matches(QKeySequence::MoveToEndOfDocument) || event->key() == Qt::Key_End) {
    bar->triggerAction(QAbstractSlider::SliderToMaximum);
  } else if (event->key() == Qt::Key_PageUp) {
    bar->triggerAction(QAbstractSlider::SliderPageStepSub);
  } else if (event->key() == Qt::Key_PageDown) {
    bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
  } else {
    QWidget::keyPressEvent(event);
    return;
  }
  event->accept();
}

void ResultScreen::orderTabStops() {
  // Reading order, from the top card's actions down to the raw metadata; "Return to Top"
  // floats over the end and comes last.
  QList<QWidget*> stops{compare_, cleanCopy_, saveReport_, inspectAnother_};
  for (PillButton* pill : severityPills_) stops << pill;
  for (PillButton* pill : summaryPills_) stops << pill;
  for (SectionCard* card : sectionCards()) {
    if (card->detailButton()) stops << card->detailButton();
    if (card->inspectFurtherButton()) stops << card->inspectFurtherButton();
  }
  if (rawBlock_)
    stops << rawBlock_->findChild<QAbstractButton*>(QStringLiteral("rawMetadataHeader"));
  stops << returnToTop_;
  QWidget* previous = scroll_;
  for (QWidget* stop : stops) {
    if (!stop) continue;
    QWidget::setTabOrder(previous, stop);
    previous = stop;
  }
}

void ResultScreen::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  // Colours of text and icons are taken from the palette when cards are made.
  if (event->type() == QEvent::PaletteChange && !rebuildPending_) {
    // A theme change arrives as several events; rebuild once, after the last of them.
    rebuildPending_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
          rebuildPending_ = false;
          refreshButtonSymbols(topCard_);
          rebuild();
        },
        Qt::QueuedConnection);
  }
}

}  // namespace lumenscribe::app
