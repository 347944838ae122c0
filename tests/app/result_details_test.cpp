// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// Details of the result screen that a first use showed wrong: the health card's colour, the
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
#include <QtTest>

#include "app/card.h"
#include "app/pills.h"
#include "app/preview_loader.h"
#include "app/raw_metadata_block.h"
#include "app/result_screen.h"
#include "app/section_card.h"
#include "app/text_labels.h"
#include "app/theme.h"
#include "app_test_support.h"

using namespace lumenscribe;
using namespace lumenscribe::app;
using lumenscribe::app::testing::fixture;
using lumenscribe::app::testing::inspectAndWait;
using lumenscribe::app::testing::section;

namespace {

LumenscribeResult resultWith(std::vector<InsightSection> sections, RawMetadata raw = {}) {
  std::vector<std::string> items;
  for (const InsightSection& s : sections) items.push_back(s.title);
  return LumenscribeResult("/tmp/made-by-hand.bin", "made-by-hand.bin", "Binary", 1, items,
                           std::move(sections), {}, std::move(raw));
}

// The accent whose colour comes closest to some pixel of `image`.
Accent drawnAccent(const QImage& image, const QPalette& palette) {
  Accent closest = Accent::system;
  int best = INT_MAX;
  for (const Accent accent :
       {Accent::blue, Accent::purple, Accent::indigo, Accent::teal, Accent::orange, Accent::green,
        Accent::cyan, Accent::mint, Accent::red}) {
    const QColor want = accentColor(accent, palette);
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QColor got = image.pixelColor(x, y);
        const int distance = std::abs(got.red() - want.red()) +
                             std::abs(got.green() - want.green()) +
                             std::abs(got.blue() - want.blue());
        if (distance < best) best = distance, closest = accent;
      }
    }
  }
  return closest;
}

}  // namespace

class ResultDetailsTest : public QObject {
  Q_OBJECT

 private slots:
  void theHealthCardTakesTheColourOfItsVerdict() {
    ResultScreen screen;
    screen.resize(900, 600);
    screen.show();
    QVERIFY(QTest::qWaitForWindowExposed(&screen));
    const std::pair<const char*, Accent> cases[] = {
        {"Looks intact", Accent::green}, {"Verification limited", Accent::orange},
        {"Empty file", Accent::orange},  {"Possible damage", Accent::red},
        {"Unreadable", Accent::red},
    };
    for (const auto& [assessment, accent] : cases) {
      screen.showResult(resultWith({section("File Health", "stethoscope",
                                            {{"Assessment", assessment}, {"Readable", "Yes"}})}),
                        {});
      QApplication::processEvents();
      const QImage badge =
          screen.sectionCard("File Health")->findChild<IconBadge*>()->grab().toImage();
      QVERIFY2(drawnAccent(badge, screen.palette()) == accent, assessment);
    }
  }

  // A folder that says nothing more than its basic facts has only the default pill "File",
  // and no "File" card: its first card is "Container".
  void aFoldersFilePillJumpsToItsContainerCard() {
    std::vector<InsightSection> sections{
        section("Container", "folder.fill", {{"Name", "empty"}, {"Kind", "Folder"}})};
    for (int i = 0; i < 6; ++i) {
      sections.push_back(
          section("Card " + std::to_string(i), "doc.fill", {{"A", "1"}, {"B", "2"}}));
    }
    ResultScreen screen;
    screen.resize(900, 400);
    screen.show();
    QVERIFY(QTest::qWaitForWindowExposed(&screen));
    screen.showResult(LumenscribeResult("/tmp/empty", "empty", "Folder", 2, {"File"},
                                        std::move(sections), {}, {}),
                      {});
    QScrollBar* bar = screen.scrollArea()->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 300);
    bar->setValue(bar->maximum());
    QCOMPARE(screen.summaryPills().size(), 1);
    screen.summaryPills().front()->click();
    const QWidget* container = screen.sectionCard("Container");
    QTRY_VERIFY(qAbs(container->mapTo(screen.scrollArea()->viewport(), QPoint()).y()) <= 20);
  }

  void returnToTopLeavesTheRawMetadataCountInSight() {
    RawMetadata raw{{"Key", "value"}};
    std::vector<InsightSection> sections;
    for (int i = 0; i < 8; ++i) {
      sections.push_back(section("Card " + std::to_string(i), "doc.fill",
                                 {{"A", "1"}, {"B", "2"}, {"C", "3"}, {"D", "4"}}));
    }
    ResultScreen screen;
    screen.resize(900, 500);
    screen.show();
    QVERIFY(QTest::qWaitForWindowExposed(&screen));
    screen.showResult(resultWith(std::move(sections), raw), {});
    QScrollBar* bar = screen.scrollArea()->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 600);
    bar->setValue(bar->maximum());
    screen.setReturnToTopShown(true);
    QApplication::processEvents();
    const auto* header =
        screen.rawMetadataBlock()->findChild<QAbstractButton*>("rawMetadataHeader");
    const QRect headerBox(header->mapTo(&screen, QPoint()), header->size());
    QVERIFY(screen.rect().contains(headerBox));
    QVERIFY(!screen.returnToTopButton()->geometry().intersects(headerBox));
  }

  void aRightClickOnAValueOffersToCopyItWhole() {
    const QString shortValue = QStringLiteral("/home/someone/Pictures/holiday.jpg");
    const QString longValue = QString(64, QLatin1Char('f'));
    QWidget host;
    for (const QString& text : {shortValue, longValue}) {
      QWidget* value = valueLabel(text, &host);
      QContextMenuEvent click(QContextMenuEvent::Mouse, QPoint(4, 4), QPoint(4, 4));
      QApplication::sendEvent(
          qobject_cast<QTextEdit*>(value) ? qobject_cast<QTextEdit*>(value)->viewport() : value,
          &click);
      auto* menu = value->findChild<QMenu*>("valueMenu");
      QVERIFY2(menu, qPrintable(text));
      QAction* copy = menu->actions().value(0);
      QVERIFY(copy && copy->text() == QStringLiteral("Copy") && copy->isEnabled());
      QApplication::clipboard()->clear();
      copy->trigger();
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
    QVERIFY(view.state().result);
    QCOMPARE(view.resultScreen()->preview()->url(), path);
    QTRY_VERIFY_WITH_TIMEOUT(view.resultScreen()->preview()->renderedPreview(), 20000);
  }
};

QTEST_MAIN(ResultDetailsTest)
#include "result_details_test.moc"
