// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The result screen's actions: saving the report, comparing with another file and making a
// clean copy. Dialogs run on the interface thread; the file work runs on the thread pool and
// owns copies of all it reads, so that closing the window or inspecting another item while
// it runs leaves it to finish unseen.
#include <QMessageBox>
#include <QPushButton>

#include "app/background_task.h"
#include "app/clean_copy_sheet.h"
#include "app/comparison_sheet.h"
#include "app/content_view.h"
#include "app/result_screen.h"
#include "app/text_labels.h"
#include "compare/comparison_text.h"
#include "core/path_text.h"
#include "report/report_file.h"

namespace lumenscribe::app {

namespace {

namespace copy_text = clean_copy_text;

// The dialogs open in the inspected item's own folder.
std::filesystem::path folderOf(const std::filesystem::path& item) { return item.parent_path(); }

QString pathName(const std::filesystem::path& path) { return qText(validUtf8(path.string())); }

}  // namespace

void ContentView::saveReport() {
  if (!state_.result || state_.isSavingReport) return;
  // The report is of the result on screen when the dialog opened, whatever comes after.
  LumenscribeResult result = *state_.result;
  FileRequest request;
  request.mode = FileRequest::Mode::saveFile;
  request.title = QStringLiteral("Save Lumenscribe Report");
  request.prompt = QStringLiteral("Save Report");
  request.folder = folderOf(result.url);
  request.proposedName = qText(validUtf8(proposedReportName(result.url)));
  request.mimeTypes = {QStringLiteral("text/plain")};
  chooseFile_(request, this,
              [view = QPointer(this),
               result = std::move(result)](std::optional<std::filesystem::path> destination) {
                if (view && destination) view->writeReport(result, *destination);
              });
}

void ContentView::writeReport(const LumenscribeResult& result,
                              const std::filesystem::path& destination) {
  state_.isSavingReport = true;
  updateActivity();
  runInBackground(
      this, [result, destination] { return writeTextReport(result, destination); },
      [this](std::optional<std::error_code> error) {
        state_.isSavingReport = false;
        updateActivity();
        if (!error) error = std::make_error_code(std::errc::not_enough_memory);
        if (*error) setErrorMessage(qText(reportSaveFailureMessage(*error)));
        emit actionFinished();
      });
}

void ContentView::startComparison() {
  if (!state_.result || state_.isComparing) return;
  const std::filesystem::path first = state_.result->url;
  FileRequest request;
  request.mode = FileRequest::Mode::openFile;
  request.title = QStringLiteral("Compare With Another File");
  request.prompt = QStringLiteral("Compare");
  request.folder = folderOf(first);
  chooseFile_(request, this,
              [view = QPointer(this), first](std::optional<std::filesystem::path> second) {
                if (view && second) view->compareWith(first, *second);
              });
}

void ContentView::compareWith(const std::filesystem::path& first,
                              const std::filesystem::path& second) {
  if (state_.isComparing) return;
  state_.isComparing = true;
  updateActivity();
  runInBackground(
      this,
      [first, second, decoder = inspector_.decoder()] {
        return compareFiles(first, second, *decoder);
      },
      [this, second](std::optional<std::variant<FileComparison, ComparisonFailure>> outcome) {
        finishComparison(outcome ? std::move(*outcome)
                                 : ComparisonFailure{
                                       second, std::make_error_code(std::errc::not_enough_memory)});
      });
}

void ContentView::finishComparison(std::variant<FileComparison, ComparisonFailure> outcome) {
  state_.isComparing = false;
  updateActivity();
  if (const auto* failure = std::get_if<ComparisonFailure>(&outcome)) {
    setErrorMessage(qText(comparisonFailureMessage(*failure)));
  } else {
    state_.comparison = std::move(std::get<FileComparison>(outcome));
    state_.showComparison = true;
    showComparisonSheet();
  }
  emit actionFinished();
}

void ContentView::showComparisonSheet() {
  if (comparisonSheet_) comparisonSheet_->close();
  comparisonSheet_ = new ComparisonSheet(*state_.comparison, this);
  comparisonSheet_->setAttribute(Qt::WA_DeleteOnClose);
  comparisonSheet_->setWindowModality(Qt::WindowModal);
  // The sheet goes; the comparison stays until the next one replaces it.
  connect(comparisonSheet_, &QDialog::finished, this, [this] {
    state_.showComparison = false;
    comparisonSheet_.clear();
  });
  comparisonSheet_->open();
}

void ContentView::startCleanCopy() {
  if (!state_.result || state_.isMakingCleanCopy) return;
  const std::filesystem::path source = state_.result->url;
  state_.isMakingCleanCopy = true;
  updateActivity();
  // The image is looked at afresh: it may have changed since it was inspected.
  runInBackground(
      this, [source, decoder = inspector_.decoder()] { return prepareCleanCopy(source, *decoder); },
      [this, source](std::optional<std::optional<CleanCopyPlan>> plan) {
        if (!plan || !*plan) {
          state_.isMakingCleanCopy = false;
          updateActivity();
          setErrorMessage(qText(copy_text::kPrepareFailed));
          emit actionFinished();
          return;
        }
        FileRequest request;
        request.mode = FileRequest::Mode::saveFile;
        request.title = qText(copy_text::kPanelTitle);
        request.prompt = qText(copy_text::kPanelPrompt);
        request.folder = folderOf(source);
        request.proposedName = qText(validUtf8((*plan)->suggestedName));
        if (!(*plan)->typeIdentifier.empty()) {
          request.mimeTypes = {qText((*plan)->typeIdentifier)};
        }
        chooseFile_(request, this,
                    [view = QPointer(this), source](std::optional<std::filesystem::path> chosen) {
                      if (!view) return;
                      if (chosen) {
                        view->makeCleanCopy(source, *chosen, CleanCopyKind::pixelSafe);
                        return;
                      }
                      view->state_.isMakingCleanCopy = false;
                      view->updateActivity();
                    });
      });
}

void ContentView::makeCleanCopy(const std::filesystem::path& source,
                                const std::filesystem::path& destination, CleanCopyKind kind) {
  state_.isMakingCleanCopy = true;
  updateActivity();
  runInBackground(
      this,
      [source, destination, kind, decoder = inspector_.decoder()] {
        return lumenscribe::makeCleanCopy(source, destination, kind, *decoder);
      },
      [this, source, destination, kind](std::optional<CleanCopyResult> result) {
        if (!result) {
          result.emplace();
          result->message = kind == CleanCopyKind::pixelSafe ? copy_text::kDestinationFailed
                                                             : copy_text::kStandardFinishFailed;
        }
        finishCleanCopy(*result, source, destination, kind);
      });
}

void ContentView::finishCleanCopy(const CleanCopyResult& result,
                                  const std::filesystem::path& source,
                                  const std::filesystem::path& destination, CleanCopyKind kind) {
  state_.isMakingCleanCopy = false;
  updateActivity();
  switch (result.state) {
    case CleanCopyState::saved:
      if (cleanCopySheet_) cleanCopySheet_->close();
      cleanCopySheet_ =
          new CleanCopySheet(destination, kind, result.check.value_or(CleanCopyCheck{}), this);
      cleanCopySheet_->setAttribute(Qt::WA_DeleteOnClose);
      cleanCopySheet_->setWindowModality(Qt::WindowModal);
      connect(cleanCopySheet_, &CleanCopySheet::inspectRequested, this,
              [this](const std::filesystem::path& copy) { startInspection(copy); });
      connect(cleanCopySheet_, &QDialog::finished, this, [this] { cleanCopySheet_.clear(); });
      cleanCopySheet_->open();
      break;
    case CleanCopyState::pixelSafeRefused:
      state_.pendingCleanCopySource = source;
      state_.pendingCleanCopyDestination = destination;
      state_.showCleanCopyFallback = true;
      askAboutStandardCleanCopy();
      break;
    case CleanCopyState::failed: {
      // The failure's fixed text, then what the system or the check said and where.
      QString details = qText(result.reason);
      if (!details.isEmpty()) details += QStringLiteral("\n\n");
      details += pathName(destination);
      setErrorMessage(qText(result.message), details);
      break;
    }
  }
  emit actionFinished();
}

void ContentView::askAboutStandardCleanCopy() {
  if (cleanCopyQuestion_) cleanCopyQuestion_->close();
  auto* question = new QMessageBox(QMessageBox::Question, qText(copy_text::kQuestionTitle),
                                   qText(copy_text::kQuestionTitle), QMessageBox::NoButton, this);
  cleanCopyQuestion_ = question;
  question->setObjectName(QStringLiteral("cleanCopyQuestion"));
  question->setInformativeText(qText(copy_text::kQuestionMessage));
  QPushButton* confirm =
      question->addButton(qText(copy_text::kQuestionConfirm), QMessageBox::AcceptRole);
  QPushButton* cancel =
      question->addButton(qText(copy_text::kQuestionCancel), QMessageBox::RejectRole);
  question->setDefaultButton(confirm);
  question->setEscapeButton(cancel);
  question->setAttribute(Qt::WA_DeleteOnClose);
  question->setWindowModality(Qt::WindowModal);
  connect(question, &QMessageBox::buttonClicked, this, [this, confirm](QAbstractButton* button) {
    if (button == confirm) {
      makeStandardCleanCopy();
    } else {
      cancelStandardCleanCopy();
    }
  });
  // Closed without an answer (the window's close button): the same as "Cancel".
  connect(question, &QMessageBox::finished, this, [this, question] {
    if (cleanCopyQuestion_ != question) return;  // a newer question took its place
    state_.showCleanCopyFallback = false;
    cleanCopyQuestion_.clear();
    cancelStandardCleanCopy();
  });
  question->open();
}

void ContentView::makeStandardCleanCopy() {
  state_.showCleanCopyFallback = false;
  if (!state_.pendingCleanCopySource || !state_.pendingCleanCopyDestination) return;
  const std::filesystem::path source = *std::exchange(state_.pendingCleanCopySource, {});
  const std::filesystem::path destination = *std::exchange(state_.pendingCleanCopyDestination, {});
  makeCleanCopy(source, destination, CleanCopyKind::standard);
}

void ContentView::cancelStandardCleanCopy() {
  state_.showCleanCopyFallback = false;
  state_.pendingCleanCopySource.reset();
  state_.pendingCleanCopyDestination.reset();
}

void ContentView::updateActivity() {
  QStringList running;
  if (state_.isComparing) running << QStringLiteral("Comparing files…");
  if (state_.isMakingCleanCopy) running << QStringLiteral("Making a clean copy…");
  if (state_.isSavingReport) running << QStringLiteral("Saving the report…");
  resultScreen_->setActivity(running.join(QStringLiteral("   ")));
  resultScreen_->setActionRunning(ResultAction::compare, state_.isComparing);
  resultScreen_->setActionRunning(ResultAction::cleanCopy, state_.isMakingCleanCopy);
  resultScreen_->setActionRunning(ResultAction::saveReport, state_.isSavingReport);
}

}  // namespace lumenscribe::app
