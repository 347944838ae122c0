// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// Long work in the window: the progress card of a long fingerprint, Cancel, and what a drag,
// a drop or Open meets while an inspection runs.
#include "app/progress_overlay.h"

#include <QFileDialog>
#include <QLabel>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtTest>
#include <fstream>

#include "app/drop_screen.h"
#include "app/lumenscribe_app.h"
#include "app/result_screen.h"
#include "app_test_support.h"

using namespace lumenscribe::app;
using lumenscribe::app::testing::fixture;
using lumenscribe::app::testing::inspectAndWait;

namespace {

// 2 GiB, sparse: no disk, but a fingerprint that takes a while.
std::filesystem::path bigFile(const QTemporaryDir& folder) {
  const std::filesystem::path path = folder.filePath(QStringLiteral("big.bin")).toStdString();
  std::ofstream{path}.close();
  std::filesystem::resize_file(path, std::uintmax_t{2} << 30);
  return path;
}

}  // namespace

class ProgressOverlayTest : public QObject {
  Q_OBJECT

 private slots:
  void init() {
    window_ = app_.mainWindow();
    window_->show();
    window_->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window_));
    QVERIFY(inspectAndWait(*window_->contentView(), fixture("notes.txt")));
  }

  // Pool threads that drew random numbers must end before OpenSSL's exit handler runs, or
  // their generators are reported as leaks.
  void cleanupTestCase() { QVERIFY(QThreadPool::globalInstance()->waitForDone(20000)); }

  void aLongFingerprintShowsHowFarItIsAndCancelGoesBackAtOnce() {
    ContentView* view = window_->contentView();
    ProgressOverlay* overlay = view->progressOverlay();
    const std::filesystem::path big = bigFile(folder_);
    for (const bool byKey : {false, true}) {
      QVERIFY(inspectAndWait(*view, fixture("notes.txt")));
      QSignalSpy finished(view, &ContentView::inspectionFinished);
      view->startInspection(big);
      QCOMPARE(overlay->itemLabel()->text(), QStringLiteral("big.bin"));
      QTRY_VERIFY_WITH_TIMEOUT(overlay->countLabel()->isVisible(), 10000);
      QVERIFY2(overlay->countLabel()->text().endsWith(QStringLiteral(" of 2.15 GB read")),
               qPrintable(overlay->countLabel()->text()));
      QVERIFY(overlay->progressBar()->value() > 0 && overlay->progressBar()->maximum() == 1000);

      byKey ? QTest::keyClick(window_, Qt::Key_Escape) : overlay->cancelButton()->click();
      QVERIFY(!view->state().isInspecting && overlay->isHidden());
      QVERIFY(!view->isShowingResult() && !view->state().result);
      // The stopped work ends soon; what it found is never shown.
      QVERIFY(QThreadPool::globalInstance()->waitForDone(10000));
      QTest::qWait(50);
      QCOMPARE(finished.count(), 0);
      QVERIFY(!view->isShowingResult());
    }
  }

  // One behaviour for every way in: refused, no highlight, and the card says why.
  void anotherItemDuringAnInspectionIsRefusedVisibly() {
    ContentView* view = window_->contentView();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(fixture("rotated.jpg").string()))});
    const auto dragEnter = [&] {
      QDragEnterEvent enter(QPoint(300, 300), Qt::CopyAction, &data, Qt::LeftButton, {});
      QApplication::sendEvent(view, &enter);
      return enter.isAccepted();
    };
    // Not busy, the result screen lights up as the drop screen does.
    QVERIFY(dragEnter() && view->resultScreen()->isTargeted());
    QDragLeaveEvent leave;
    QApplication::sendEvent(view, &leave);
    QVERIFY(!view->resultScreen()->isTargeted());

    const std::pair<const char*, std::function<void()>> attempts[] = {
        {"drag", [&] { QVERIFY(!dragEnter()); }},
        {"drop", [&] { view->handleDrop(data); }},
        {"open", [&] { QTest::keyClick(window_, Qt::Key_O, Qt::ControlModifier); }},
        {"open folder",
         [&] { QTest::keyClick(window_, Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier); }},
    };
    const std::filesystem::path big = bigFile(folder_);
    for (const auto& [name, attempt] : attempts) {
      view->startInspection(big);
      QVERIFY(view->progressOverlay()->noteLabel()->isHidden());
      attempt();
      QVERIFY2(view->progressOverlay()->noteLabel()->isVisible(), name);
      QVERIFY2(!view->state().isTargeted && !view->resultScreen()->isTargeted(), name);
      QVERIFY2(window_->findChildren<QFileDialog*>().isEmpty(), name);
      view->cancelInspection();
    }
  }

 private:
  QTemporaryDir folder_;
  LumenscribeApp app_;
  MainWindow* window_ = nullptr;
};

QTEST_MAIN(ProgressOverlayTest)
#include "progress_overlay_test.moc"
