// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The main window on a 1366 x 768 laptop screen (run as it is and at 1.5x scaling): where it
// opens, how it reflows down to its minimum, the keyboard, and the messages of a start.
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtTest>

#include "app/about_window.h"
#include "app/drop_screen.h"
#include "app/lumenscribe_app.h"
#include "app/result_screen.h"
#include "app_test_support.h"

using namespace lumenscribe::app;
using lumenscribe::app::testing::fixture;
using lumenscribe::app::testing::inspectAndWait;

namespace {

// The visible widgets under `root` that stick out of `frame` (sideways only, when `across`).
QStringList stickingOut(QWidget* root, QWidget* frame, bool across) {
  QStringList out;
  for (QWidget* widget : root->findChildren<QWidget*>()) {
    if (!widget->isVisibleTo(root) || widget->size().isEmpty()) continue;
    const QRect box(widget->mapTo(frame, QPoint()), widget->size());
    if (across ? box.left() < 0 || box.right() >= frame->width() : !frame->rect().contains(box))
      out << QLatin1String(widget->metaObject()->className());
  }
  return out;
}

MainWindow* activeWindow(LumenscribeApp& app) {
  MainWindow* window = app.mainWindow();
  window->show();
  window->activateWindow();
  return QTest::qWaitForWindowActive(window) ? window : nullptr;
}

}  // namespace

class MainWindowTest : public QObject {
  Q_OBJECT

 private slots:
  // Pool threads that drew random numbers must end before OpenSSL's exit handler runs, or
  // their generators are reported as leaks.
  void cleanupTestCase() { QVERIFY(QThreadPool::globalInstance()->waitForDone(20000)); }

  void opensInsideTheScreenAndReflowsDownToItsMinimum() {
    QTemporaryDir folder;
    LumenscribeApp app;
    MainWindow* window = activeWindow(app);
    QVERIFY(window);
    QVERIFY(window->screen()->availableGeometry().contains(window->frameGeometry()));
    window->resize(window->minimumSize());
    QTRY_COMPARE(window->size(), window->minimumSize());
    ContentView* view = window->contentView();
    QVERIFY2(stickingOut(view->dropScreen(), view->dropScreen(), false).isEmpty(),
             qPrintable(stickingOut(view->dropScreen(), view->dropScreen(), false).join(' ')));
    for (const std::filesystem::path& item :
         {fixture("photo_gps.jpg"), std::filesystem::path(folder.path().toStdString())}) {
      QVERIFY(inspectAndWait(*view, item));
      QScrollArea* scroll = view->resultScreen()->scrollArea();
      QTRY_VERIFY(scroll->widget()->width() <= scroll->viewport()->width());
      QApplication::processEvents();
      const QStringList out = stickingOut(scroll->widget(), scroll->viewport(), true);
      QVERIFY2(out.isEmpty(), qPrintable(out.join(' ')));
    }
  }

  void keysScrollANewResultTabStartsAtItsFirstActionAndEscapeOrCtrlWGoesBack() {
    LumenscribeApp app;
    MainWindow* window = activeWindow(app);
    QVERIFY(window);
    ContentView* view = window->contentView();
    ResultScreen* screen = view->resultScreen();
    const auto press = [](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
      QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    };
    for (int round = 0; round < 2; ++round) {
      QVERIFY(inspectAndWait(*view, fixture("photo_gps.jpg")));
      QScrollBar* bar = screen->scrollArea()->verticalScrollBar();
      QTRY_VERIFY(bar->maximum() > bar->pageStep());
      press(Qt::Key_PageDown);
      QVERIFY(bar->value() > 0);
      press(Qt::Key_End);
      QCOMPARE(bar->value(), bar->maximum());
      press(Qt::Key_Home);
      QCOMPARE(bar->value(), 0);
      press(Qt::Key_Down);
      QCOMPARE(bar->value(), bar->singleStep());
      press(Qt::Key_Tab);
      QCOMPARE(QApplication::focusWidget(), screen->actionButton(QStringLiteral("Compare")));
      for (int i = 0; i < 4; ++i) press(Qt::Key_Tab);  // somewhere else before the next result
    }
    for (const QKeyCombination key :
         {QKeyCombination(Qt::Key_Escape), QKeyCombination(Qt::ControlModifier, Qt::Key_W)}) {
      QVERIFY(inspectAndWait(*view, fixture("notes.txt")));
      QTest::keyClick(window, key.key(), key.keyboardModifiers());
      QVERIFY(!view->isShowingResult() && !view->state().result);
    }
  }

  // The default button among them: it must not look focused already.
  void everyTabStopShowsItsFocus() {
    LumenscribeApp app;
    MainWindow* window = activeWindow(app);
    QVERIFY(window);
    QVERIFY(inspectAndWait(*window->contentView(), fixture("empty.txt")));  // "Inspect Further"
    QSet<QWidget*> seen;
    for (QWidget* focused = nullptr; !seen.contains(focused = QApplication::focusWidget());) {
      if (seen.insert(focused); seen.size() > 1) {  // the first holds the focus for the keys
        const QImage withFocus = focused->grab().toImage();
        focused->clearFocus();
        QVERIFY2(withFocus != focused->grab().toImage(), focused->metaObject()->className());
        focused->setFocus(Qt::TabFocusReason);
      }
      QTest::keyClick(focused, Qt::Key_Tab);
    }
    QVERIFY(seen.size() >= 9);  // four actions, pills, "Inspect Further", the raw metadata
  }

  void aStartWithSeveralOrMissingItemsNamesThemInAnAlertOverTheWindow() {
    LumenscribeApp app;
    MainWindow* window = activeWindow(app);
    QVERIFY(window);
    ContentView* view = window->contentView();
    const std::filesystem::path notes = fixture("notes.txt"), missing = fixture("missing.jpg");
    const struct {
      std::vector<std::filesystem::path> items;
      QString message;
      std::string details;
    } cases[] = {{{notes, missing}, oneItemMessage(), notes.string() + '\n' + missing.string()},
                 {{missing}, QStringLiteral("No such file or directory"), missing.string()}};
    for (const auto& c : cases) {
      QSignalSpy finished(view, &ContentView::inspectionFinished);
      view->openItems(c.items);
      if (c.items.size() == 1) QVERIFY(finished.wait(20000));
      QMessageBox* alert = view->alert();
      QTRY_VERIFY(alert && alert->isVisible());
      QCOMPARE(alert->parentWidget()->window(), window);
      QCOMPARE(alert->text(), c.message);
      QCOMPARE(alert->informativeText(), QString::fromStdString(c.details));
      alert->button(QMessageBox::Ok)->click();
      QTest::qWait(20);
    }
  }

  void aboutOpensOverTheMainWindowAndInsideTheScreen() {
    LumenscribeApp app;
    MainWindow* window = activeWindow(app);
    QVERIFY(window);
    const QRect available = window->screen()->availableGeometry();
    window->move(available.topLeft());
    app.showAboutWindow();
    QVERIFY(QTest::qWaitForWindowExposed(app.aboutWindow()));
    const QRect about = app.aboutWindow()->frameGeometry();
    const QPoint offset = about.center() - window->frameGeometry().center();
    // At 1.5x the screen is too short to centre it vertically; it then keeps to the top.
    QVERIFY(available.contains(about));
    QVERIFY(qAbs(offset.x()) <= 4 && (qAbs(offset.y()) <= 4 || about.top() == available.top()));
  }
};

QTEST_MAIN(MainWindowTest)
#include "main_window_test.moc"
