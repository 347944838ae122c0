// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The main window on a small laptop screen (1366 x 768, run once as it is and once at 1.5x
// scaling): where it opens, how it reflows down to its minimum, the keyboard, and the
// messages of a start.
#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>
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

// The visible widgets under `root` whose left or right edge lies outside [0, width) of
// `frame`, by class and text or name.
QStringList outside(QWidget* root, QWidget* frame, bool vertically) {
  QStringList clipped;
  for (QWidget* widget : root->findChildren<QWidget*>()) {
    if (!widget->isVisibleTo(root) || widget->size().isEmpty()) continue;
    const QRect box(widget->mapTo(frame, QPoint(0, 0)), widget->size());
    const bool out =
        vertically ? !frame->rect().contains(box) : box.left() < 0 || box.right() >= frame->width();
    if (!out) continue;
    const auto* button = qobject_cast<QAbstractButton*>(widget);
    clipped << QStringLiteral("%1 %2 %3")
                   .arg(QLatin1String(widget->metaObject()->className()),
                        button ? button->text() : widget->objectName())
                   .arg(QStringLiteral("%1,%2 %3x%4")
                            .arg(box.x())
                            .arg(box.y())
                            .arg(box.width())
                            .arg(box.height()));
  }
  return clipped;
}

void showActive(QWidget* window) {
  window->show();
  window->activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(window));
}

}  // namespace

class MainWindowTest : public QObject {
  Q_OBJECT

 private slots:
  void opensInsideTheAvailableScreenArea() {
    LumenscribeApp app;
    MainWindow* window = app.mainWindow();
    showActive(window);
    const QRect available = window->screen()->availableGeometry();
    QVERIFY2(available.contains(window->frameGeometry()),
             qPrintable(QStringLiteral("%1x%2 on %3x%4")
                            .arg(window->frameGeometry().width())
                            .arg(window->frameGeometry().height())
                            .arg(available.width())
                            .arg(available.height())));
    QCOMPARE(window->minimumSize(), MainWindow::kMinimumSize);
    const QSize needed = window->minimumSizeHint();
    QVERIFY2(
        needed.width() <= MainWindow::kMinimumSize.width() &&
            needed.height() <= MainWindow::kMinimumSize.height(),
        qPrintable(
            QStringLiteral("the layout needs %1x%2").arg(needed.width()).arg(needed.height())));
  }

  void everythingFitsAcrossAtTheMinimumSize() {
    QTemporaryDir folder;
    QVERIFY(QFile::copy(QString::fromStdString(fixture("photo_gps.jpg").string()),
                        folder.filePath("photo.jpg")));
    LumenscribeApp app;
    MainWindow* window = app.mainWindow();
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window));
    window->resize(MainWindow::kMinimumSize);
    QTRY_COMPARE(window->size(), MainWindow::kMinimumSize);
    ContentView* view = window->contentView();
    QApplication::processEvents();
    QVERIFY2(outside(view->dropScreen(), view->dropScreen(), true).isEmpty(),
             qPrintable(outside(view->dropScreen(), view->dropScreen(), true).join('\n')));

    for (const std::filesystem::path& item : {fixture("photo_gps.jpg"), fixture("notes.txt"),
                                              std::filesystem::path(folder.path().toStdString())}) {
      QVERIFY(inspectAndWait(*view, item));
      QScrollArea* scroll = view->resultScreen()->scrollArea();
      QTRY_VERIFY(scroll->widget()->width() <= scroll->viewport()->width());
      QApplication::processEvents();
      const QStringList clipped = outside(scroll->widget(), scroll->viewport(), false);
      QVERIFY2(clipped.isEmpty(),
               qPrintable(QString::fromStdString(item.string()) + '\n' + clipped.join('\n')));
    }
  }

  void tabStartsAtTheFirstActionOfEveryResultAndKeysScrollAtOnce() {
    LumenscribeApp app;
    MainWindow* window = app.mainWindow();
    showActive(window);
    ContentView* view = window->contentView();
    ResultScreen* screen = view->resultScreen();
    for (int round = 0; round < 2; ++round) {
      QVERIFY(inspectAndWait(*view, fixture("photo_gps.jpg")));
      // Wherever the focus was, the first Tab of a new result reaches the first action.
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      QCOMPARE(QApplication::focusWidget(), screen->actionButton(QStringLiteral("Compare")));
      for (int i = 0; i < 5; ++i) QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      QCOMPARE_NE(QApplication::focusWidget(), screen->actionButton(QStringLiteral("Compare")));
    }

    QVERIFY(inspectAndWait(*view, fixture("photo_gps.jpg")));
    QScrollBar* bar = screen->scrollArea()->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > bar->pageStep());
    struct Case {
      Qt::Key key;
      int expected;  // -1: somewhere between the ends
    };
    for (const Case& c :
         {Case{Qt::Key_Down, bar->singleStep()}, Case{Qt::Key_PageDown, -1},
          Case{Qt::Key_End, bar->maximum()}, Case{Qt::Key_Up, -1}, Case{Qt::Key_Home, 0}}) {
      const int before = bar->value();
      QTest::keyClick(QApplication::focusWidget(), c.key);
      QVERIFY2(
          c.expected >= 0 ? bar->value() == c.expected : bar->value() != before && bar->value() > 0,
          qPrintable(QStringLiteral("key %1: %2").arg(c.key).arg(bar->value())));
    }
    // From a focused action too, the page keys scroll.
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_End);
    QCOMPARE(bar->value(), bar->maximum());
  }

  void everyTabStopShowsItsFocus() {
    LumenscribeApp app;
    MainWindow* window = app.mainWindow();
    showActive(window);
    ContentView* view = window->contentView();
    QVERIFY(inspectAndWait(*view, fixture("empty.txt")));  // offers "Inspect Further" too
    QSet<QWidget*> seen;
    for (int i = 0; i < 40; ++i) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      QWidget* focused = QApplication::focusWidget();
      if (seen.contains(focused)) break;
      seen.insert(focused);
      const QImage withFocus = focused->grab().toImage();
      focused->clearFocus();
      const QImage without = focused->grab().toImage();
      QVERIFY2(withFocus != without, focused->metaObject()->className());
      focused->setFocus(Qt::TabFocusReason);
    }
    QVERIFY(seen.size() >= 8);  // four actions, pills, the health button, the raw metadata

    // A focused button does not look like the default one.
    QWidget panel;
    QPushButton plain(QStringLiteral("Compare"), &panel);
    QPushButton preferred(QStringLiteral("Compare"), &panel);
    preferred.setDefault(true);
    preferred.move(0, 40);
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    panel.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&panel));
    plain.setFocus(Qt::TabFocusReason);
    QVERIFY(plain.hasFocus());
    QVERIFY(plain.grab().toImage() != preferred.grab().toImage());
  }

  void escapeAndCloseReturnToTheDropScreen() {
    LumenscribeApp app;
    MainWindow* window = app.mainWindow();
    showActive(window);
    ContentView* view = window->contentView();
    for (const QKeyCombination key :
         {QKeyCombination(Qt::Key_Escape), QKeyCombination(Qt::ControlModifier, Qt::Key_W)}) {
      QVERIFY(inspectAndWait(*view, fixture("notes.txt")));
      QTest::keyClick(window, key.key(), key.keyboardModifiers());
      QVERIFY2(!view->isShowingResult(), qPrintable(QKeySequence(key).toString()));
      QVERIFY(!view->state().result);
    }
  }

  void aStartWithSeveralOrMissingItemsNamesThemInAnAlertOverTheWindow() {
    LumenscribeApp app;
    MainWindow* window = app.mainWindow();
    showActive(window);
    ContentView* view = window->contentView();
    const std::filesystem::path missing = fixture("no-such-photo.jpg");
    const std::string notes = fixture("notes.txt").string();
    struct Case {
      std::vector<std::filesystem::path> items;
      QString message;
      QString details;
    };
    const Case cases[] = {
        {{fixture("notes.txt"), missing},
         oneItemMessage(),
         QString::fromStdString(notes + '\n' + missing.string())},
        {{missing},
         QStringLiteral("No such file or directory"),
         QString::fromStdString(missing.string())},
    };
    for (const Case& c : cases) {
      QSignalSpy finished(view, &ContentView::inspectionFinished);
      view->openItems(c.items);
      if (c.items.size() == 1) QVERIFY(finished.wait(20000));
      QMessageBox* alert = view->alert();
      QVERIFY(alert);
      QTRY_VERIFY(alert->isVisible());
      QCOMPARE(alert->window()->parentWidget()->window(), window);
      QCOMPARE(alert->text(), c.message);
      QCOMPARE(alert->informativeText(), c.details);
      alert->button(QMessageBox::Ok)->click();
      QTest::qWait(20);
    }
  }

  void aboutOpensOverTheMainWindow() {
    LumenscribeApp app;
    MainWindow* window = app.mainWindow();
    showActive(window);
    window->move(window->screen()->availableGeometry().topLeft());
    QTRY_COMPARE(window->frameGeometry().topLeft(),
                 window->screen()->availableGeometry().topLeft());
    app.showAboutWindow();
    QVERIFY(QTest::qWaitForWindowExposed(app.aboutWindow()));
    const QRect about = app.aboutWindow()->frameGeometry();
    const QRect available = window->screen()->availableGeometry();
    const QPoint offset = about.center() - window->frameGeometry().center();
    // Centred, unless the screen is too short for that (at 1.5x): then within it.
    const bool centredVertically = qAbs(offset.y()) <= 4 || about.top() == available.top() ||
                                   about.bottom() == available.bottom();
    QVERIFY2(qAbs(offset.x()) <= 4 && centredVertically && available.contains(about),
             qPrintable(QStringLiteral("%1,%2").arg(offset.x()).arg(offset.y())));
  }
};

QTEST_MAIN(MainWindowTest)
#include "main_window_test.moc"
