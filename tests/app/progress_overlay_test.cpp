// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// Long work in the window: the progress card of a long fingerprint, Cancel, and what a drag,
// a drop or Open meets while an inspection runs.
#include "app/progress_overlay.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFileDialog>
#include <QLabel>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtTest>

#include "app/drop_screen.h"
#include "app/lumenscribe_app.h"
#include "app/result_screen.h"
#include "app_test_support.h"

using namespace lumenscribe::app;
using lumenscribe::app::testing::fixture;
using lumenscribe::app::testing::inspectAndWait;

namespace {

// Sparse, so that it costs no disk, and large enough that its fingerprint takes a while.
std::filesystem::path bigFile(const QTemporaryDir& folder) {
  const std::filesystem::path path = folder.filePath(QStringLiteral("big.bin")).toStdString();
  const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (fd < 0) return {};
  const bool sized = ::ftruncate(fd, std::int64_t{2} << 30) == 0;
  ::close(fd);
  return sized ? path : std::filesystem::path();
}

QUrl fileUrl(const std::filesystem::path& path) {
  return QUrl::fromLocalFile(QString::fromStdString(path.string()));
}

void showActive(QWidget* window) {
  window->show();
  window->activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(window));
}

}  // namespace

class ProgressOverlayTest : public QObject {
  Q_OBJECT

 private slots:
  // Pool threads that drew random numbers must end before OpenSSL's exit handler runs, or
  // their generators are reported as leaks.
  void cleanupTestCase() { QVERIFY(QThreadPool::globalInstance()->waitForDone(20000)); }

  void aLongFingerprintShowsHowFarItIsAndCancelGoesBackAtOnce() {
    QTemporaryDir folder;
    const std::filesystem::path big = bigFile(folder);
    QVERIFY(!big.empty());
    LumenscribeApp app;
    MainWindow* window = app.mainWindow();
    showActive(window);
    ContentView* view = window->contentView();
    ProgressOverlay* overlay = view->progressOverlay();
    for (const bool byKey : {false, true}) {
      QVERIFY(inspectAndWait(*view, fixture("notes.txt")));
      QSignalSpy finished(view, &ContentView::inspectionFinished);
      view->startInspection(big);
      QVERIFY(overlay->isVisible());
      QCOMPARE(overlay->itemLabel()->text(), QStringLiteral("big.bin"));
      QTRY_VERIFY_WITH_TIMEOUT(overlay->countLabel()->isVisible(), 10000);
      QVERIFY2(overlay->countLabel()->text().endsWith(QStringLiteral(" of 2.15 GB read")),
               qPrintable(overlay->countLabel()->text()));
      QCOMPARE(overlay->progressBar()->maximum(), 1000);
      QVERIFY(overlay->progressBar()->value() > 0 && overlay->progressBar()->value() < 1000);

      if (byKey) {
        QTest::keyClick(window, Qt::Key_Escape);
      } else {
        overlay->cancelButton()->click();
      }
      QVERIFY(!view->state().isInspecting);
      QVERIFY(overlay->isHidden());
      QVERIFY(!view->isShowingResult());
      QVERIFY(!view->state().result);
      // The stopped work ends soon; what it found is never shown.
      QVERIFY(QThreadPool::globalInstance()->waitForDone(10000));
      QTest::qWait(50);
      QCOMPARE(finished.count(), 0);
      QVERIFY(!view->isShowingResult());
    }
    QVERIFY(inspectAndWait(*view, fixture("notes.txt")));
    QCOMPARE(view->state().result->displayName, "notes.txt");
  }

  // One behaviour for every way in: refused, no highlight, and the card says why.
  void anotherItemDuringAnInspectionIsRefusedVisibly() {
    QTemporaryDir folder;
    const std::filesystem::path big = bigFile(folder);
    QVERIFY(!big.empty());
    LumenscribeApp app;
    MainWindow* window = app.mainWindow();
    showActive(window);
    ContentView* view = window->contentView();
    QVERIFY(inspectAndWait(*view, fixture("notes.txt")));
    QMimeData data;
    data.setUrls({fileUrl(fixture("photo_gps.jpg"))});
    const std::pair<const char*, std::function<void()>> attempts[] = {
        {"drag",
         [&] {
           QDragEnterEvent enter(QPoint(300, 300), Qt::CopyAction, &data, Qt::LeftButton,
                                 Qt::NoModifier);
           QApplication::sendEvent(view, &enter);
           QVERIFY(!enter.isAccepted());
         }},
        {"drop", [&] { view->handleDrop(data); }},
        {"open", [&] { QTest::keyClick(window, Qt::Key_O, Qt::ControlModifier); }},
        {"open folder",
         [&] { QTest::keyClick(window, Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier); }},
    };
    for (const auto& [name, attempt] : attempts) {
      view->startInspection(big);
      QVERIFY(view->progressOverlay()->noteLabel()->isHidden());
      attempt();
      QVERIFY2(view->progressOverlay()->noteLabel()->isVisible(), name);
      QVERIFY2(!view->state().isTargeted, name);
      QVERIFY2(!view->dropScreen()->isTargeted() && !view->resultScreen()->isTargeted(), name);
      QVERIFY2(window->findChildren<QFileDialog*>().isEmpty(), name);
      view->cancelInspection();
    }
    QVERIFY(QThreadPool::globalInstance()->waitForDone(10000));
  }

  void theResultScreenLightsUpUnderADragToo() {
    ContentView view;
    view.resize(900, 640);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QVERIFY(inspectAndWait(view, fixture("notes.txt")));
    QMimeData data;
    data.setUrls({fileUrl(fixture("photo_gps.jpg"))});
    QDragEnterEvent enter(QPoint(300, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&view, &enter);
    QVERIFY(enter.isAccepted());
    QVERIFY(view.resultScreen()->isTargeted());
    QDragLeaveEvent leave;
    QApplication::sendEvent(&view, &leave);
    QVERIFY(!view.resultScreen()->isTargeted());
  }
};

QTEST_MAIN(ProgressOverlayTest)
#include "progress_overlay_test.moc"
