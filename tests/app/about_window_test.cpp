// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/about_window.h"

#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QtTest>

#include "app/lumenscribe_app.h"
#include "lumenscribe/product.h"

using namespace lumenscribe::app;

class AboutWindowTest : public QObject {
  Q_OBJECT

 private slots:
  void thereIsAtMostOneAboutWindow() {
    LumenscribeApp app;
    QVERIFY(!app.aboutWindow());
    app.showAboutWindow();
    AboutWindow* first = app.aboutWindow();
    QVERIFY(first);
    QVERIFY(QTest::qWaitForWindowExposed(first));
    app.showAboutWindow();
    QCOMPARE(app.aboutWindow(), first);
    QCOMPARE(app.mainWindow()->findChildren<AboutWindow*>().size(), 1);

    QCOMPARE(first->windowTitle(), QStringLiteral("About Lumenscribe"));
    // Not resizable, and everything in it fits.
    QCOMPARE(first->minimumSize(), first->maximumSize());
    QVERIFY(first->size().width() >= first->sizeHint().width());
    QVERIFY(first->size().height() >= first->sizeHint().height());
    QVERIFY(
        !(first->windowFlags() & (Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint)));
    QVERIFY(
        first->findChild<QLabel*>("versionLine")->text().contains(lumenscribe::product::version));

    // "Done" closes it; the next request makes a fresh, centred window.
    first->view()->doneButton()->click();
    QTRY_VERIFY(!app.aboutWindow());
    app.showAboutWindow();
    AboutWindow* second = app.aboutWindow();
    QVERIFY(second);
    const QPoint centre = second->screen()->availableGeometry().center();
    QVERIFY((second->frameGeometry().center() - centre).manhattanLength() <= 4);
    second->close();
    QTRY_VERIFY(!app.aboutWindow());
  }
};

QTEST_MAIN(AboutWindowTest)
#include "about_window_test.moc"
