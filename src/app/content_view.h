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

#include "app/health_sheet.h"
#include "app/presentation.h"
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
  bool showComparison = false;
  bool isComparing = false;
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
  std::shared_ptr<const platform::OpenedItem> item;
};

/// Inspects one item and gathers its preview facts. Blocking; runs on a worker thread.
InspectionOutcome inspectItem(const FileInspector& inspector, const std::filesystem::path& url,
                              const InspectionControl& control = {});

/// The message for several items dropped at once.
QString oneItemMessage();

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
  /// Inspects `url` on a worker thread; ignored while an inspection runs.
  void startInspection(const std::filesystem::path& url);
  /// Back to the drop screen, with every disclosure collapsed.
  void inspectAnotherFile();
  /// Shows `message` in the alert (or closes the alert for nothing).
  void setErrorMessage(std::optional<QString> message);
  /// Asks for a file (or, with `folder`, a folder) to inspect.
  void chooseItemToOpen(bool folder);

  DropScreen* dropScreen() const { return dropScreen_; }
  ResultScreen* resultScreen() const { return resultScreen_; }
  ProgressOverlay* progressOverlay() const { return overlay_; }
  QMessageBox* alert() const { return alert_; }
  HealthSheet* healthSheet() const { return healthSheet_; }
  bool isShowingResult() const;

 signals:
  /// An inspection ended and its outcome is on screen (result or alert).
  void inspectionFinished();

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void finishInspection();
  void setTargeted(bool targeted);
  void showHealthSheet(const InsightSection& section);
  void connectResultScreen();

  ContentViewState state_;
  FileInspector inspector_;
  // Ends the running inspection's folder walk or ZIP listing when the window goes.
  std::stop_source stopInspection_;
  // How far the running inspection's walk or listing has come, written by its worker.
  std::shared_ptr<std::atomic<std::int64_t>> entriesSeen_ =
      std::make_shared<std::atomic<std::int64_t>>(0);
  QTimer* progressTimer_ = nullptr;
  QFutureWatcher<InspectionOutcome> watcher_;
  QStackedWidget* stack_ = nullptr;
  DropScreen* dropScreen_ = nullptr;
  ResultScreen* resultScreen_ = nullptr;
  ProgressOverlay* overlay_ = nullptr;
  QPointer<QMessageBox> alert_;
  QPointer<HealthSheet> healthSheet_;
};

}  // namespace lumenscribe::app
