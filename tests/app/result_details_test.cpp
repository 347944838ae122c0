// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// Details of the result screen that a first use showed wrong: the health card's colour, a
// folder's one pill, "Return to Top" over the last card, copying a value, and the picture of
// a file whose name is not UTF-8.
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMimeData>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtTest>

#include "app/card.h"
#include "app/pills.h"
#include "app/preview_loader.h"
#include "app/raw_metadata_block.h"
#include "app/result_screen.h"
#include "app/section_card.h"
#include "app/text_labels.h"
#include "app_test_support.h"

using namespace lumenscribe;
using namespace lumenscribe::app;
using lumenscribe::app::testing::fixture;
using lumenscribe::app::testing::section;

namespace {

// A folder's first card, its health (which a folder has not, but a card is a card), and
// enough cards after them to scroll; only the default pill "File", which has no card.
LumenscribeResult folderResult(const std::string& assessment) {
  std::vector<InsightSection> sections{
      section("Container", "folder.fill", {{"Name", "x"}}),
      section("File Health", "stethoscope", {{"Assessment", assessment}})};
  for (int i = 0; i < 8; ++i) {
    sections.push_back(section("Card " + std::to_string(i), "doc.fill", {{"A", "1"}, {"B", "2"}}));
  }
  return LumenscribeResult("/tmp/x", "x", "Folder", 10, {"File"}, std::move(sections), {},
                           {{"Key", "value"}});
}

}  // namespace

class ResultDetailsTest : public QObject {
  Q_OBJECT

 private slots:
  // Pool threads that drew random numbers must end before OpenSSL's exit handler runs, or
  // their generators are reported as leaks.
  void cleanupTestCase() { QVERIFY(QThreadPool::globalInstance()->waitForDone(20000)); }

  void healthColourPillTargetAndReturnToTopFollowTheResult() {
    ResultScreen screen;
    screen.resize(900, 500);
    screen.show();
    QVERIFY(QTest::qWaitForWindowExposed(&screen));
    for (const auto& [assessment, accent] : {std::pair{"Looks intact", Accent::green},
                                             {"Verification limited", Accent::orange},
                                             {"Possible damage", Accent::red},
                                             {"Unreadable", Accent::red}}) {
      screen.showResult(folderResult(assessment), {});
      QVERIFY2(screen.sectionCard("File Health")->findChild<IconBadge*>()->accent() == accent,
               assessment);
    }
    QScrollBar* bar = screen.scrollArea()->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 300);
    bar->setValue(bar->maximum());
    screen.setReturnToTopShown(true);
    const auto* header = screen.rawMetadataBlock()->findChild<QWidget*>("rawMetadataHeader");
    const QRect headerBox(header->mapTo(&screen, QPoint()), header->size());
    QVERIFY(screen.rect().contains(headerBox));
    QVERIFY(!screen.returnToTopButton()->geometry().intersects(headerBox));

    screen.summaryPills().front()->click();  // "File": the folder's first card
    const QWidget* container = screen.sectionCard("Container");
    QTRY_VERIFY(qAbs(container->mapTo(screen.scrollArea()->viewport(), QPoint()).y()) <= 20);
  }

  void aRightClickOnAValueOffersToCopyItWhole() {
    QWidget host;
    for (const QString& text : {QStringLiteral("/home/someone/Pictures/holiday.jpg"),
                                QString(64, QLatin1Char('f'))}) {  // a label, a text field
      QWidget* value = valueLabel(text, &host);
      auto* field = qobject_cast<QTextEdit*>(value);
      QContextMenuEvent click(QContextMenuEvent::Mouse, QPoint(4, 4), QPoint(4, 4));
      QApplication::sendEvent(field ? field->viewport() : value, &click);
      auto* menu = value->findChild<QMenu*>("valueMenu");
      QVERIFY2(menu && menu->actions().value(0)->text() == QStringLiteral("Copy"),
               qPrintable(text));
      menu->actions().value(0)->trigger();
      QCOMPARE(QApplication::clipboard()->text(), text);
      menu->close();
    }
  }

  void aPictureWhoseNameIsNotUtf8IsPreviewed() {
    QTemporaryDir folder;
    const std::filesystem::path path =
        std::filesystem::path(folder.path().toStdString()) / "caf\xe9.jpg";
    // QTemporaryDir cannot name this file to remove it.
    const std::unique_ptr<const std::filesystem::path, void (*)(const std::filesystem::path*)>
        removeFile(&path,
                   [](const std::filesystem::path* file) { std::filesystem::remove(*file); });
    std::filesystem::copy_file(fixture("photo_gps.jpg"), path);
    ContentView view;
    QMimeData data;
    data.setUrls({QUrl::fromEncoded("file://" + QByteArray(path.c_str()).toPercentEncoding("/"))});
    QSignalSpy finished(&view, &ContentView::inspectionFinished);
    QVERIFY(view.handleDrop(data));
    QVERIFY(finished.wait(20000));
    QCOMPARE(view.resultScreen()->preview()->url(), path);
    QTRY_VERIFY_WITH_TIMEOUT(view.resultScreen()->preview()->renderedPreview(), 20000);
  }
};

QTEST_MAIN(ResultDetailsTest)
#include "result_details_test.moc"
