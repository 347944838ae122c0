// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The window's drop and inspection lifecycle, run against the real engine.
#include "app/content_view.h"

#include <sys/stat.h>

#include <QAbstractButton>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QUrl>
#include <QtTest>
#include <functional>

#include "app/drop_screen.h"
#include "app/health_sheet.h"
#include "app/pills.h"
#include "app/preview_loader.h"
#include "app/privacy_card.h"
#include "app/progress_overlay.h"
#include "app/raw_metadata_block.h"
#include "app/result_screen.h"
#include "app/section_card.h"
#include "app/text_labels.h"
#include "app_test_support.h"
#include "platform/decoder_protocol.h"

using namespace lumenscribe;
using namespace lumenscribe::app;
using lumenscribe::app::testing::fixture;
using lumenscribe::app::testing::inspectAndWait;

namespace {

std::unique_ptr<QMimeData> dropOf(std::initializer_list<QUrl> urls) {
  auto data = std::make_unique<QMimeData>();
  data->setUrls(QList<QUrl>(urls));
  return data;
}

QUrl fileUrl(const std::filesystem::path& path) {
  return QUrl::fromLocalFile(QString::fromStdString(path.string()));
}

QStringList titlesOf(const QList<SectionCard*>& cards) {
  QStringList titles;
  for (const SectionCard* card : cards) titles << QString::fromStdString(card->section().title);
  return titles;
}

}  // namespace

class ContentViewTest : public QObject {
  Q_OBJECT

 private slots:
  void aDropOfOneItemShowsItsSectionsInOrder() {
    ContentView view;
    view.resize(1000, 720);
    QVERIFY(!view.isShowingResult());
    QSignalSpy finished(&view, &ContentView::inspectionFinished);
    QVERIFY(view.handleDrop(*dropOf({fileUrl(fixture("notes.txt"))})));
    QVERIFY(view.state().isInspecting);
    QVERIFY(!view.progressOverlay()->isHidden());
    QVERIFY(finished.wait(20000));

    const ContentViewState& state = view.state();
    QVERIFY(!state.isInspecting);
    QVERIFY(view.progressOverlay()->isHidden());
    QVERIFY(state.result);
    QVERIFY(view.isShowingResult());
    QStringList expected;
    for (const InsightSection& section : state.result->sections)
      expected << QString::fromStdString(section.title);
    QVERIFY(expected.size() >= 2);
    QCOMPARE(titlesOf(view.resultScreen()->sectionCards()), expected);
    QCOMPARE(view.resultScreen()->findChild<QLabel*>("detailCount")->text(),
             QStringLiteral("%1 details").arg(state.result->summaryCount));
    // A plain text file raises only the default neutral finding.
    QVERIFY(view.resultScreen()->privacyCard()->countTexts().isEmpty());
  }

  // Each refusal is told in an alert; "OK" clears it, and the next one gets a fresh alert at
  // once, not the one on its way out. The result shown stays.
  void aRefusedDropOrFailedInspectionGivesItsMessageAndKeepsTheResult() {
    QTemporaryDir folder;
    const std::filesystem::path fifo = std::filesystem::path(folder.path().toStdString()) / "pipe";
    QCOMPARE(::mkfifo(fifo.c_str(), 0600), 0);
    ContentView view;
    QVERIFY(inspectAndWait(view, fixture("notes.txt")));
    const Uuid shown = view.state().result->id;
    const std::pair<std::function<void()>, QString> cases[] = {
        {[&] {
           view.handleDrop(*dropOf({fileUrl(fixture("notes.txt")), fileUrl(fixture("empty.txt"))}));
         },
         "Lumenscribe inspects one item at a time. Drop a single file or folder."},
        {[&] { view.handleDrop(*dropOf({QUrl(QStringLiteral("https://example.org/a.jpg"))})); },
         "Lumenscribe could not read this file."},
        {[&] { inspectAndWait(view, fixture("no-such-file.txt")); }, "No such file or directory"},
        // A FIFO is refused without being opened.
        {[&] { inspectAndWait(view, fifo); }, "Lumenscribe could not inspect this file yet."},
    };
    for (const auto& [act, message] : cases) {
      act();
      QTest::qWait(20);  // deferred deletions run
      QCOMPARE(view.state().errorMessage.value_or(QString()), message);
      QVERIFY(view.alert() && view.alert()->isVisible());
      QCOMPARE(view.alert()->windowTitle(), QStringLiteral("Lumenscribe"));
      QCOMPARE(view.alert()->text(), message);
      QCOMPARE(view.state().result->id, shown);
      QVERIFY(view.isShowingResult() && !view.state().isInspecting);
      view.alert()->button(QMessageBox::Ok)->click();
      QVERIFY(!view.state().errorMessage && !view.alert());
    }
    // Nothing to drop: the drop is declined and nothing changes.
    QVERIFY(!view.handleDrop(QMimeData()));
  }

  void aDropDuringAnInspectionIsIgnored() {
    ContentView view;
    QSignalSpy finished(&view, &ContentView::inspectionFinished);
    QVERIFY(view.handleDrop(*dropOf({fileUrl(fixture("photo_gps.jpg"))})));
    QVERIFY(view.state().isInspecting);
    QVERIFY(view.handleDrop(*dropOf({fileUrl(fixture("notes.txt"))})));
    QVERIFY(view.handleDrop(*dropOf({QUrl(QStringLiteral("https://example.org/"))})));
    QVERIFY(finished.wait(20000));
    QTest::qWait(100);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(view.state().result->displayName, "photo_gps.jpg");
  }

  void inspectAnotherFileCollapsesEverything() {
    ContentView view;
    view.resize(1000, 720);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QVERIFY(inspectAndWait(view, fixture("photo_gps.jpg")));
    ResultScreen* screen = view.resultScreen();

    QTest::mouseClick(screen->rawMetadataBlock()->findChild<QAbstractButton*>("rawMetadataHeader"),
                      Qt::LeftButton);
    QVERIFY(view.state().showRawMetadata);
    QVERIFY(screen->rawMetadataBlock()->isExpanded());
    // What the camera and video cards' buttons ask for.
    emit screen->detailsToggleRequested(DetailKind::camera);
    emit screen->detailsToggleRequested(DetailKind::video);
    QVERIFY(view.state().showCameraDetails && view.state().showVideoDetails);

    QTest::mouseClick(screen->actionButton("Inspect Another File"), Qt::LeftButton);
    QVERIFY(!view.isShowingResult());
    QVERIFY(!view.state().result);
    QVERIFY(!view.state().showRawMetadata);
    QVERIFY(!view.state().showCameraDetails);
    QVERIFY(!view.state().showVideoDetails);

    QVERIFY(inspectAndWait(view, fixture("photo_gps.jpg")));
    QVERIFY(!screen->rawMetadataBlock()->isExpanded());
    for (const char* action : {"Compare", "Create Clean Copy", "Save Report"}) {
      QVERIFY(screen->actionButton(action));
      QVERIFY(screen->actionButton(action)->isEnabled());
    }
  }

  void anItemShownAgainAfterInspectAnotherFileIsPreviewedAfresh() {
    QTemporaryDir folder;
    const std::filesystem::path item =
        std::filesystem::path(folder.path().toStdString()) / "picture.jpg";
    std::filesystem::copy_file(fixture("photo_gps.jpg"), item);
    ContentView view;
    const CachedFilePreview* preview = view.resultScreen()->preview();
    const auto shown = [preview] { return preview->renderedPreview().value_or(QPixmap()).size(); };
    QVERIFY(inspectAndWait(view, item));
    QTRY_VERIFY(shown().width() > shown().height());

    // The user turns the picture upright in an editor and drops it again.
    view.inspectAnotherFile();
    std::filesystem::copy_file(fixture("rotated.jpg"), item,
                               std::filesystem::copy_options::overwrite_existing);
    QVERIFY(inspectAndWait(view, item));
    QTRY_VERIFY(shown().height() > shown().width());
  }

  void aDecoderCrashStillShowsAResultAndTheNextDropWorks() {
    QTemporaryDir folder;
    const std::filesystem::path crash =
        std::filesystem::path(folder.path().toStdString()) / "crash.png";
    QVERIFY(testing::writeFile(
        crash, "\x89PNG\r\n\x1a\n" + std::string(platform::decoder::kTestCrashMarker)));
    ContentView view;
    view.resize(1000, 720);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QVERIFY(inspectAndWait(view, crash));
    QVERIFY(view.isShowingResult());
    QVERIFY(!view.state().errorMessage);
    SectionCard* health = view.resultScreen()->sectionCard("File Health");
    QVERIFY(health);
    QCOMPARE(health->section().rows.at(0).value, std::string("Verification limited"));
    QVERIFY(view.resultScreen()->sectionCard("Identity & Integrity"));
    // Its preview was asked of a fresh worker, which crashed on it too: the icon stays.
    QTRY_VERIFY(!view.resultScreen()->preview()->isLoading());
    QVERIFY(!view.resultScreen()->preview()->renderedPreview());

    view.inspectAnotherFile();
    QVERIFY(inspectAndWait(view, fixture("photo_gps.jpg")));
    QCOMPARE(view.resultScreen()->sectionCard("File Health")->section().rows.at(0).value,
             std::string("Looks intact"));
    QTRY_VERIFY(view.resultScreen()->preview()->renderedPreview());
  }

  void doubtfulHealthOpensTheExplanationSheet() {
    ContentView view;
    view.resize(1000, 720);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QVERIFY(inspectAndWait(view, fixture("empty.txt")));
    SectionCard* health = view.resultScreen()->sectionCard("File Health");
    QVERIFY(health);
    QVERIFY(health->inspectFurtherButton());
    // The cards below it (the text analysis of the file) may still be laid out.
    QTRY_VERIFY(health->inspectFurtherButton()->height() > 0);
    QTest::mouseClick(health->inspectFurtherButton(), Qt::LeftButton);
    QVERIFY(view.state().healthSectionForInspection);
    QCOMPARE(view.state().healthSectionForInspection->title, "File Health");
    HealthSheet* sheet = view.healthSheet();
    QVERIFY(sheet && sheet->isVisible());
    QCOMPARE(sheet->findChild<QLabel*>("assessment")->text(), QStringLiteral("Empty file"));
    QVERIFY(
        sheet->findChild<QLabel*>("meaning")->text().startsWith("The file contains zero bytes."));
    sheet->accept();
    QVERIFY(!view.state().healthSectionForInspection);

    // An intact file offers nothing to explain.
    QVERIFY(inspectAndWait(view, fixture("photo_gps.jpg")));
    QVERIFY(!view.resultScreen()->sectionCard("File Health")->inspectFurtherButton());
  }

  void dragHighlightFollowsTheDrag() {
    ContentView view;
    view.resize(1000, 720);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const auto data = dropOf({fileUrl(fixture("notes.txt"))});
    QDragEnterEvent enter(QPoint(400, 300), Qt::CopyAction, data.get(), Qt::LeftButton,
                          Qt::NoModifier);
    QApplication::sendEvent(&view, &enter);
    QVERIFY(enter.isAccepted());
    QVERIFY(view.state().isTargeted);
    QVERIFY(view.dropScreen()->isTargeted());
    QDragLeaveEvent leave;
    QApplication::sendEvent(&view, &leave);
    QVERIFY(!view.state().isTargeted);

    QMimeData text;
    text.setText(QStringLiteral("not a file"));
    QDragEnterEvent plain(QPoint(400, 300), Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&view, &plain);
    QVERIFY(!plain.isAccepted());
    QVERIFY(!view.state().isTargeted);
  }

  void fileDataIsShownAsPlainTextNeverAsMarkup() {
    // The path ends in "<b>x</b><i>y.txt": a folder "<b>x<" holding "b><i>y.txt".
    QTemporaryDir folder;
    const std::filesystem::path path =
        std::filesystem::path(folder.path().toStdString()) / "<b>x<" / "b><i>y.txt";
    std::filesystem::create_directory(path.parent_path());
    QVERIFY(testing::writeFile(path, "notes\n"));
    ContentView view;
    QVERIFY(inspectAndWait(view, path));
    QCOMPARE(view.resultScreen()->findChild<WrappedText*>("displayName")->text(),
             QStringLiteral("b><i>y.txt"));
    QStringList shown;
    for (const QLabel* label : view.resultScreen()->findChildren<QLabel*>()) {
      if (!label->text().contains(QStringLiteral("<i>"))) continue;
      shown << label->text();
      const bool plain =
          label->textFormat() == Qt::PlainText ||
          (label->textFormat() == Qt::AutoText && !Qt::mightBeRichText(label->text()));
      QVERIFY2(plain, qPrintable(label->text()));
    }
    // Text too long to wrap at spaces is shown by WrappedText, which holds plain text only.
    for (const WrappedText* text : view.resultScreen()->findChildren<WrappedText*>()) {
      shown << text->text();
    }
    QVERIFY2(!shown.filter(QStringLiteral("<b>x</b><i>y.txt")).isEmpty(),
             qPrintable(shown.join('|')));
    QVERIFY2(shown.contains(QStringLiteral("b><i>y.txt")), qPrintable(shown.join('|')));
  }

  void aDroppedNameThatIsNotUtf8ArrivesByteForByte() {
    QTemporaryDir folder;
    const std::string name = "caf\xe9 notes.txt";  // Latin-1, as an old archive might hold it
    const std::filesystem::path path = std::filesystem::path(folder.path().toStdString()) / name;
    // QTemporaryDir cannot name this file to remove it; without this the folder stays behind.
    const std::unique_ptr<const std::filesystem::path, void (*)(const std::filesystem::path*)>
        removeFile(&path,
                   [](const std::filesystem::path* file) { std::filesystem::remove(*file); });
    QVERIFY(testing::writeFile(path, "hello\n"));
    const QByteArray encoded = "file://" + QByteArray(path.c_str()).toPercentEncoding("/");
    ContentView view;
    QSignalSpy finished(&view, &ContentView::inspectionFinished);
    QVERIFY(view.handleDrop(*dropOf({QUrl::fromEncoded(encoded)})));
    QVERIFY(finished.wait(20000));
    QVERIFY2(view.state().result, qPrintable(view.state().errorMessage.value_or(QString())));
    QCOMPARE(view.state().result->url, path);
  }

  void closingDuringAnInspectionLeavesCleanly() {
    auto view = std::make_unique<ContentView>();
    view->startInspection(fixture("photo_gps.jpg"));
    QVERIFY(view->state().isInspecting);
    view.reset();  // the worker finishes on its own; nothing may call back into the window
    QThreadPool::globalInstance()->waitForDone();
    QTest::qWait(50);
  }
};

QTEST_MAIN(ContentViewTest)
#include "content_view_test.moc"
