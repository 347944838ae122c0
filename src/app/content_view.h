// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QFutureWatcher>
#include <QMessageBox>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <system_error>
#include <variant>
#include <vector>

#include "app/clean_copy_sheet.h"
#include "app/comparison_sheet.h"
#include "app/file_chooser.h"
#include "app/health_sheet.h"
#include "app/presentation.h"
#include "cleancopy/clean_copy.h"
#include "compare/file_comparison.h"
#include "lumenscribe/file_inspector.h"
#include "lumenscribe/result.h"
#include "platform/opened_item.h"

class QMimeData;
class QStackedWidget;
class QTimer;

namespace lumenscribe::app {

class DropScreen;
class ProgressOverlay;
class ResultScreen;

/// Everything the window remembers. It lives in ContentView and changes only on the
/// interface thread; the screens draw from it and report what the user asks for.
struct ContentViewState {
  std::optional<LumenscribeResult> result;
  bool isTargeted = false;
  bool isInspecting = false;
  std::optional<QString> errorMessage;
  bool showRawMetadata = false;
  bool showCameraDetails = false;
  bool showVideoDetails = false;
  bool showCleanCopyFallback = false;
  std::optional<std::filesystem::path> pendingCleanCopySource;
  std::optional<std::filesystem::path> pendingCleanCopyDestination;
  std::optional<FileComparison> comparison;
  bool showComparison = false;
  bool isComparing = false;
  /// A report is being written.
  bool isSavingReport = false;
  /// A clean copy is being prepared, asked about (where to save it) or written.
  bool isMakingCleanCopy = false;
  std::optional<InsightSection> healthSectionForInspection;
  std::optional<PrivacyLevel> hoveredSeverity;
  std::optional<QString> hoveredDiveDeeperSection;
  std::optional<QString> hoveredInsightPill;
  bool showReturnToTop = false;
  bool isReturnToTopHovered = false;
  bool isTopCardHovered = false;
};

/// What a worker hands back after one inspection: the result or the error, the facts the top
/// card needs for its icon (read on the worker too, so the interface never stats), and the
/// opened item, so that the preview shows the very bytes that were inspected.
struct InspectionOutcome {
  std::optional<LumenscribeResult> result;
  std::error_code error;
  std::string previewSymbol = "doc.fill";
  bool isDirectory = false;
  bool canMakeCleanCopy = false;
  std::shared_ptr<const platform::OpenedItem> item;
};

/// Inspects one item and gathers its preview facts. Blocking; runs on a worker thread.
InspectionOutcome inspectItem(const FileInspector& inspector, const std::filesystem::path& url,
                              const InspectionControl& control = {});

/// The message for several items dropped at once.
QString oneItemMessage();

/// The paths of several items, one a line, for the details of a message about them (the
/// first few, then how many more).
QString pathList(const std::vector<std::filesystem::path>& paths);

/// How far the running inspection has come: written by its worker threads, read by the
/// window a few times a second.
struct InspectionProgress {
  std::atomic<std::int64_t> entries{0};
  std::atomic<std::int64_t> bytesRead{0};
  std::atomic<std::int64_t> totalBytes{0};
};

/// The main window's content: heading, drop screen or result screen, progress overlay,
/// error alert and the health sheet.
class ContentView : public QWidget {
  Q_OBJECT

 public:
  explicit ContentView(QWidget* parent = nullptr);
  ~ContentView() override;

  const ContentViewState& state() const { return state_; }
  /// The window's one inspector; its decoder worker serves the previews too.
  const FileInspector& inspector() const { return inspector_; }

  /// Acts on dropped data as a drop on the window would; false when the drop is declined.
  bool handleDrop(const QMimeData& data);
  /// Inspects `url` on a worker thread. While an inspection runs, another is refused and the
  /// progress card says so.
  void startInspection(const std::filesystem::path& url);
  /// What the program was started with: one item is inspected (a relative path from the
  /// working folder); several bring the one-item message naming them.
  void openItems(const std::vector<std::filesystem::path>& items);
  /// Stops the running inspection, drops what it found and goes back to the drop screen.
  void cancelInspection();
  /// Escape on the result screen and Ctrl+W: back to the drop screen (an inspection running
  /// is cancelled).
  void closeResult();
  /// Back to the drop screen, with every disclosure collapsed.
  void inspectAnotherFile();
  /// Shows `message` in the alert (or closes the alert for nothing), with `details` under it.
  void setErrorMessage(std::optional<QString> message, const QString& details = {});
  /// Asks for a file (or, with `folder`, a folder) to inspect.
  void chooseItemToOpen(bool folder);

  /// "Save Report": asks where, then writes the report of the result on screen in the
  /// background.
  void saveReport();
  /// "Compare": asks for a second file, then compares the inspected one with it in the
  /// background and shows the comparison sheet.
  void startComparison();
  /// "Create Clean Copy": checks the image and asks where, then makes a pixel-safe copy in
  /// the background; when none can be made, asks whether to make a standard one.
  void startCleanCopy();
  /// The question's two answers.
  void makeStandardCleanCopy();
  void cancelStandardCleanCopy();
  /// Replaces the file dialogs of these actions (tests answer them directly).
  void setFileChooser(FileChooser chooser) { chooseFile_ = std::move(chooser); }
  /// True unless a report or a clean copy is being written: what still runs only reads.
  bool onlyReading() const { return !state_.isSavingReport && !state_.isMakingCleanCopy; }

  DropScreen* dropScreen() const { return dropScreen_; }
  ResultScreen* resultScreen() const { return resultScreen_; }
  ProgressOverlay* progressOverlay() const { return overlay_; }
  QMessageBox* alert() const { return alert_; }
  HealthSheet* healthSheet() const { return healthSheet_; }
  ComparisonSheet* comparisonSheet() const { return comparisonSheet_; }
  CleanCopySheet* cleanCopySheet() const { return cleanCopySheet_; }
  QMessageBox* cleanCopyQuestion() const { return cleanCopyQuestion_; }
  bool isShowingResult() const;

 signals:
  /// An inspection ended and its outcome is on screen (result or alert).
  void inspectionFinished();
  /// Work an action ran in the background ended and its outcome is on screen.
  void actionFinished();

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void finishInspection(std::optional<InspectionOutcome> outcome, const std::filesystem::path& url);
  void setTargeted(bool targeted);
  void showHealthSheet(const InsightSection& section);
  void connectResultScreen();
  void writeReport(const LumenscribeResult& result, const std::filesystem::path& destination);
  void compareWith(const std::filesystem::path& first, const std::filesystem::path& second);
  void finishComparison(std::variant<FileComparison, ComparisonFailure> outcome);
  void showComparisonSheet();
  void makeCleanCopy(const std::filesystem::path& source, const std::filesystem::path& destination,
                     CleanCopyKind kind);
  void finishCleanCopy(const CleanCopyResult& result, const std::filesystem::path& source,
                       const std::filesystem::path& destination, CleanCopyKind kind);
  void askAboutStandardCleanCopy();
  void updateActivity();

  ContentViewState state_;
  FileInspector inspector_;
  // Ends the running inspection's fingerprint, folder walk or ZIP listing on Cancel or when
  // the window goes.
  std::stop_source stopInspection_;
  std::shared_ptr<InspectionProgress> progress_ = std::make_shared<InspectionProgress>();
  // Counts inspections, so that the outcome of a cancelled one is known and dropped.
  std::uint64_t inspectionNumber_ = 0;
  QTimer* progressTimer_ = nullptr;
  QStackedWidget* stack_ = nullptr;
  DropScreen* dropScreen_ = nullptr;
  ResultScreen* resultScreen_ = nullptr;
  ProgressOverlay* overlay_ = nullptr;
  QPointer<QMessageBox> alert_;
  QPointer<HealthSheet> healthSheet_;
  QPointer<ComparisonSheet> comparisonSheet_;
  QPointer<CleanCopySheet> cleanCopySheet_;
  QPointer<QMessageBox> cleanCopyQuestion_;
  FileChooser chooseFile_ = chooseWithFileDialog;
};

}  // namespace lumenscribe::app
