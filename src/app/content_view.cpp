// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/content_view.h"

#include <QDragEnterEvent>
#include <QFile>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QShortcut>
#include <QStackedWidget>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

#include "app/background_task.h"
#include "app/card.h"
#include "app/drop_screen.h"
#include "app/health_sheet.h"
#include "app/preview_loader.h"
#include "app/progress_overlay.h"
#include "app/result_screen.h"
#include "app/text_labels.h"
#include "app/theme.h"
#include "core/path_text.h"
#include "platform/decoder_client.h"

namespace lumenscribe::app {

namespace {

/// The local path of a dropped location, byte for byte: names that are not UTF-8 arrive
/// percent-encoded and must not be decoded through QString.
std::optional<std::filesystem::path> localPath(const QUrl& url) {
  if (!url.isValid() || !url.isLocalFile()) return std::nullopt;
  const QByteArray bytes = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
  if (bytes.isEmpty()) return std::nullopt;
  return std::filesystem::path(bytes.toStdString());
}

QWidget* heading(QWidget* parent) {
  auto* bar = new QWidget(parent);
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(22, 14, 22, 12);
  layout->setSpacing(12);
  layout->addWidget(new IconBadge("doc.text.magnifyingglass", Accent::system, 34, bar));
  auto* name = new QLabel(QStringLiteral("Lumenscribe"), bar);
  name->setFont(scaledFont(bar->font(), 1.45, QFont::Bold));
  layout->addWidget(name);
  auto* tagline = quietLabel(QStringLiteral("See what a file knows."), bar);
  tagline->setFont(scaledFont(bar->font(), 1.05));
  tagline->setWordWrap(false);
  tagline->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  layout->addWidget(tagline);
  layout->addStretch(1);
  return bar;
}

}  // namespace

InspectionOutcome inspectItem(const FileInspector& inspector, const std::filesystem::path& url,
                              const InspectionControl& control) {
  InspectionOutcome outcome;
  Expected<platform::OpenedItem> opened = platform::openItem(url);
  if (!opened) {
    outcome.error = opened.error();
    return outcome;
  }
  auto item = std::make_shared<const platform::OpenedItem>(std::move(opened).value());
  outcome.result = inspector.inspect(*item, control);
  const ItemFacts& facts = item->facts();
  outcome.isDirectory = facts.isDirectory;
  outcome.previewSymbol = std::string(previewSymbolFor(
      PreviewKindFacts{facts.isDirectory, facts.isPackage, pathExtension(url), facts.contentType}));
  // Asked here, off the interface thread: it reads the picture's header in the decoder.
  if (inspector.decoder() && !control.stopRequested()) {
    outcome.canMakeCleanCopy = lumenscribe::canMakeCleanCopy(*item, *inspector.decoder());
  }
  outcome.item = std::move(item);
  return outcome;
}

QString oneItemMessage() {
  return QStringLiteral("Lumenscribe inspects one item at a time. Drop a single file or folder.");
}

QString pathList(const std::vector<std::filesystem::path>& paths) {
  constexpr std::size_t kShown = 8;
  QStringList lines;
  for (std::size_t i = 0; i < paths.size() && i < kShown; ++i) {
    lines << qText(validUtf8(paths[i].string()));
  }
  if (paths.size() > kShown) lines << QStringLiteral("and %1 more").arg(paths.size() - kShown);
  return lines.join(QLatin1Char('\n'));
}

ContentView::ContentView(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("contentView"));
  setAcceptDrops(true);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(heading(this));
  layout->addWidget(new Divider(this));
  stack_ = new QStackedWidget(this);
  dropScreen_ = new DropScreen(stack_);
  resultScreen_ = new ResultScreen(stack_);
  resultScreen_->preview()->setDecoder(inspector_.decoder());
  stack_->addWidget(dropScreen_);
  stack_->addWidget(resultScreen_);
  layout->addWidget(stack_, 1);
  overlay_ = new ProgressOverlay(this);
  connect(overlay_, &ProgressOverlay::cancelRequested, this, &ContentView::cancelInspection);
  // The workers only store their counts; the interface thread looks at them a few times a
  // second.
  progressTimer_ = new QTimer(this);
  progressTimer_->setInterval(100);
  connect(progressTimer_, &QTimer::timeout, this, [this] {
    overlay_->setProgress(progress_->entries);
    overlay_->setBytesRead(progress_->bytesRead, progress_->totalBytes);
  });

  connect(dropScreen_, &DropScreen::openRequested, this, &ContentView::chooseItemToOpen);
  // Escape leaves the result (or the inspection) for the drop screen, wherever the focus is.
  connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this,
          &ContentView::closeResult);
  connectResultScreen();
}

// A running inspection holds only copies and finishes on its own, its outcome unread; its
// fingerprint, folder walk or ZIP listing ends at once.
ContentView::~ContentView() { stopInspection_.request_stop(); }

void ContentView::connectResultScreen() {
  ResultScreen* screen = resultScreen_;
  connect(screen, &ResultScreen::inspectAnotherRequested, this, &ContentView::inspectAnotherFile);
  connect(screen, &ResultScreen::compareRequested, this, &ContentView::startComparison);
  connect(screen, &ResultScreen::cleanCopyRequested, this, &ContentView::startCleanCopy);
  connect(screen, &ResultScreen::saveReportRequested, this, &ContentView::saveReport);
  connect(screen, &ResultScreen::rawMetadataToggleRequested, this, [this] {
    state_.showRawMetadata = !state_.showRawMetadata;
    resultScreen_->setRawMetadataShown(state_.showRawMetadata);
  });
  connect(screen, &ResultScreen::detailsToggleRequested, this, [this](DetailKind kind) {
    bool& shown = kind == DetailKind::camera ? state_.showCameraDetails : state_.showVideoDetails;
    shown = !shown;
    resultScreen_->setDetailsShown(kind, shown);
  });
  connect(screen, &ResultScreen::inspectFurtherRequested, this, &ContentView::showHealthSheet);
  connect(screen, &ResultScreen::returnToTopWanted, this, [this](bool wanted) {
    state_.showReturnToTop = wanted;
    resultScreen_->setReturnToTopShown(wanted);
  });
  connect(screen, &ResultScreen::severityHovered, this,
          [this](std::optional<PrivacyLevel> level) { state_.hoveredSeverity = level; });
  connect(screen, &ResultScreen::insightPillHovered, this,
          [this](std::optional<QString> item) { state_.hoveredInsightPill = std::move(item); });
  connect(screen, &ResultScreen::diveDeeperHovered, this, [this](std::optional<QString> title) {
    state_.hoveredDiveDeeperSection = std::move(title);
  });
  connect(screen, &ResultScreen::returnToTopHovered, this,
          [this](bool hovered) { state_.isReturnToTopHovered = hovered; });
  connect(screen, &ResultScreen::topCardHovered, this,
          [this](bool hovered) { state_.isTopCardHovered = hovered; });
}

bool ContentView::isShowingResult() const { return stack_->currentWidget() == resultScreen_; }

bool ContentView::handleDrop(const QMimeData& data) {
  const QList<QUrl> urls = data.urls();
  if (urls.isEmpty()) return false;
  if (urls.size() > 1) {
    std::vector<std::filesystem::path> paths;
    for (const QUrl& url : urls) {
      const std::optional<std::filesystem::path> path = localPath(url);
      paths.push_back(path ? *path : std::filesystem::path(url.toDisplayString().toStdString()));
    }
    setErrorMessage(oneItemMessage(), pathList(paths));
    return true;
  }
  const std::optional<std::filesystem::path> path = localPath(urls.front());
  if (!path) {
    setErrorMessage(
        QString::fromStdString(make_error_code(FileInspectionError::unreadableFile).message()),
        urls.front().toDisplayString());
    return true;
  }
  startInspection(*path);
  return true;
}

void ContentView::startInspection(const std::filesystem::path& url) {
  if (state_.isInspecting) {
    overlay_->showBusyNote();
    return;
  }
  state_.isInspecting = true;
  setErrorMessage(std::nullopt);
  state_.showCameraDetails = false;
  state_.showVideoDetails = false;
  resultScreen_->setDetailsShown(DetailKind::camera, false);
  resultScreen_->setDetailsShown(DetailKind::video, false);
  overlay_->start(qText(validUtf8(lastPathComponent(url))));
  overlay_->setGeometry(rect());
  overlay_->show();
  overlay_->raise();
  overlay_->setFocus();  // keys must not reach the screen underneath
  // A fresh stop and count for every inspection: a cancelled one's workers may still be
  // ending, and keep theirs.
  stopInspection_ = std::stop_source();
  progress_ = std::make_shared<InspectionProgress>();
  progressTimer_->start();
  InspectionControl control{
      stopInspection_.get_token(),
      [progress = progress_](std::int64_t entries) { progress->entries = entries; },
      [progress = progress_](std::int64_t read, std::int64_t total) {
        progress->totalBytes = total;
        progress->bytesRead = read;
      }};
  const std::uint64_t number = ++inspectionNumber_;
  runInBackground(
      this, [inspector = inspector_, url, control] { return inspectItem(inspector, url, control); },
      [this, number, url](std::optional<InspectionOutcome> outcome) {
        if (number == inspectionNumber_) finishInspection(std::move(outcome), url);
      });
}

void ContentView::finishInspection(std::optional<InspectionOutcome> outcome,
                                   const std::filesystem::path& url) {
  if (!outcome) {
    // The worker ended without an outcome (it threw): an empty error would read "Success".
    outcome.emplace();
    outcome->error = make_error_code(FileInspectionError::unsupportedFile);
  }
  progressTimer_->stop();
  overlay_->hide();
  state_.isInspecting = false;
  if (outcome->result) {
    state_.result = std::move(outcome->result);
    state_.showRawMetadata = false;
    resultScreen_->showResult(
        *state_.result, ResultPresentation{false, state_.showCameraDetails, state_.showVideoDetails,
                                           outcome->previewSymbol, outcome->isDirectory,
                                           outcome->canMakeCleanCopy, std::move(outcome->item)});
    stack_->setCurrentWidget(resultScreen_);
    resultScreen_->focusStart();
  } else {
    setErrorMessage(QString::fromStdString(outcome->error.message()),
                    qText(validUtf8(url.string())));
  }
  emit inspectionFinished();
}

void ContentView::openItems(const std::vector<std::filesystem::path>& items) {
  if (items.size() > 1) {
    setErrorMessage(oneItemMessage(), pathList(items));
  } else if (items.size() == 1) {
    std::error_code error;
    std::filesystem::path item = std::filesystem::absolute(items.front(), error);
    if (error) item = items.front();
    startInspection(item);
  }
}

void ContentView::cancelInspection() {
  if (!state_.isInspecting) return;
  stopInspection_.request_stop();
  ++inspectionNumber_;  // its outcome, when it comes, is dropped
  progressTimer_->stop();
  overlay_->hide();
  state_.isInspecting = false;
  inspectAnotherFile();
}

void ContentView::closeResult() {
  if (state_.isInspecting) {
    cancelInspection();
  } else if (isShowingResult()) {
    inspectAnotherFile();
  }
}

void ContentView::inspectAnotherFile() {
  state_.result.reset();
  state_.showRawMetadata = false;
  state_.showCameraDetails = false;
  state_.showVideoDetails = false;
  state_.showReturnToTop = false;
  resultScreen_->setReturnToTopShown(false);
  // The next drop may be the same item, changed in the meantime: its picture is read again.
  resultScreen_->preview()->clear();
  stack_->setCurrentWidget(dropScreen_);
  dropScreen_->setFocus();
}

void ContentView::setErrorMessage(std::optional<QString> message, const QString& details) {
  state_.errorMessage = std::move(message);
  if (!state_.errorMessage) {
    if (alert_) alert_->close();
    return;
  }
  if (!alert_) {
    alert_ = new QMessageBox(QMessageBox::Warning, QStringLiteral("Lumenscribe"), QString(),
                             QMessageBox::Ok, this);
    alert_->setObjectName(QStringLiteral("errorAlert"));
    alert_->setAttribute(Qt::WA_DeleteOnClose);
    alert_->setWindowModality(Qt::WindowModal);
    // Forgotten as soon as it is answered: it deletes itself later, so a message arriving
    // in between gets an alert of its own.
    connect(alert_, &QMessageBox::finished, this, [this] {
      state_.errorMessage.reset();
      alert_.clear();
    });
  }
  alert_->setText(*state_.errorMessage);
  alert_->setInformativeText(details);
  alert_->open();
}

void ContentView::showHealthSheet(const InsightSection& section) {
  if (healthSheet_) healthSheet_->close();
  state_.healthSectionForInspection = section;
  healthSheet_ = new HealthSheet(section, this);
  healthSheet_->setAttribute(Qt::WA_DeleteOnClose);
  healthSheet_->setWindowModality(Qt::WindowModal);
  connect(healthSheet_, &QDialog::finished, this, [this] {
    state_.healthSectionForInspection.reset();
    healthSheet_.clear();
  });
  healthSheet_->open();
}

void ContentView::chooseItemToOpen(bool folder) {
  if (state_.isInspecting) {
    overlay_->showBusyNote();
    return;
  }
  auto* dialog =
      new QFileDialog(this, folder ? QStringLiteral("Open Folder") : QStringLiteral("Open"));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(folder ? QFileDialog::Directory : QFileDialog::ExistingFile);
  if (folder) dialog->setOption(QFileDialog::ShowDirsOnly);
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& file) {
    startInspection(std::filesystem::path(QFile::encodeName(file).toStdString()));
  });
  dialog->open();
}

void ContentView::setTargeted(bool targeted) {
  state_.isTargeted = targeted;
  dropScreen_->setTargeted(targeted);
  resultScreen_->setTargeted(targeted);
}

void ContentView::dragEnterEvent(QDragEnterEvent* event) {
  if (!event->mimeData()->hasUrls()) {
    event->ignore();
    return;
  }
  // Refused while busy: no highlight, the pointer says no, and the progress card says why.
  if (state_.isInspecting) {
    overlay_->showBusyNote();
    event->ignore();
    return;
  }
  setTargeted(true);
  event->acceptProposedAction();
}

void ContentView::dragMoveEvent(QDragMoveEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void ContentView::dragLeaveEvent(QDragLeaveEvent* event) {
  setTargeted(false);
  QWidget::dragLeaveEvent(event);
}

void ContentView::dropEvent(QDropEvent* event) {
  setTargeted(false);
  if (handleDrop(*event->mimeData())) {
    event->acceptProposedAction();
  } else {
    event->ignore();
  }
}

}  // namespace lumenscribe::app
