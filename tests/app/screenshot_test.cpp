// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// Renders the window's screens into PNG files under the build folder for a reviewer to look
// at: the drop screen, a GPS photo's result screen (as seen and in full length), the same in
// a dark palette, and the About window.
#include <QApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QLabel>
#include <QLayout>
#include <QMimeData>
#include <QPushButton>
#include <QScrollArea>
#include <QStyle>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtTest>
#include <fstream>

#include "app/about_window.h"
#include "app/clean_copy_sheet.h"
#include "app/comparison_sheet.h"
#include "app/health_sheet.h"
#include "app/lumenscribe_app.h"
#include "app/pills.h"
#include "app/preview_loader.h"
#include "app/progress_overlay.h"
#include "app/raw_metadata_block.h"
#include "app/result_screen.h"
#include "app/section_card.h"
#include "app_test_support.h"

using namespace lumenscribe::app;
using lumenscribe::app::testing::fixture;
using lumenscribe::app::testing::inspectAndWait;

namespace {

QString screenshotPath(const char* name) {
  QDir().mkpath(QStringLiteral(LUMENSCRIBE_SCREENSHOT_DIR));
  return QStringLiteral(LUMENSCRIBE_SCREENSHOT_DIR "/%1.png").arg(QLatin1String(name));
}

// A picture of one colour means nothing was drawn.
bool hasContent(const QImage& image) {
  if (image.isNull()) return false;
  const QRgb first = image.pixel(0, 0);
  for (int y = 0; y < image.height(); y += 7) {
    for (int x = 0; x < image.width(); x += 7) {
      if (image.pixel(x, y) != first) return true;
    }
  }
  return false;
}

void save(QWidget* widget, const char* name) {
  const QImage image = widget->grab().toImage();
  QVERIFY(hasContent(image));
  QVERIFY(image.save(screenshotPath(name)));
}

QPalette darkPalette() {
  QPalette dark;
  dark.setColor(QPalette::Window, QColor(0x1f, 0x20, 0x24));
  dark.setColor(QPalette::WindowText, QColor(0xe8, 0xe8, 0xea));
  dark.setColor(QPalette::Base, QColor(0x2a, 0x2b, 0x30));
  dark.setColor(QPalette::AlternateBase, QColor(0x32, 0x33, 0x39));
  dark.setColor(QPalette::Text, QColor(0xe8, 0xe8, 0xea));
  dark.setColor(QPalette::Button, QColor(0x33, 0x34, 0x3a));
  dark.setColor(QPalette::ButtonText, QColor(0xe8, 0xe8, 0xea));
  dark.setColor(QPalette::Highlight, QColor(0x3d, 0x8b, 0xff));
  dark.setColor(QPalette::HighlightedText, Qt::white);
  dark.setColor(QPalette::PlaceholderText, QColor(0x9a, 0x9b, 0xa3));
  dark.setColor(QPalette::ToolTipBase, QColor(0x33, 0x34, 0x3a));
  dark.setColor(QPalette::ToolTipText, QColor(0xe8, 0xe8, 0xea));
  dark.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0x70, 0x71, 0x78));
  dark.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x70, 0x71, 0x78));
  return dark;
}

}  // namespace

class ScreenshotTest : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase() { QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion"))); }

  void screens() {
    LumenscribeApp app;
    MainWindow* window = app.mainWindow();
    window->resize(1040, 820);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window));
    save(window, "drop-screen");

    ContentView* view = window->contentView();
    QMimeData drag;
    drag.setUrls({QUrl::fromLocalFile(QString::fromStdString(fixture("photo_gps.jpg").string()))});
    QDragEnterEvent enter(QPoint(500, 400), Qt::CopyAction, &drag, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view, &enter);
    save(window, "drop-screen-targeted");
    QDragLeaveEvent leave;
    QApplication::sendEvent(view, &leave);

    QVERIFY(inspectAndWait(*view, fixture("photo_gps.jpg")));
    QVERIFY(view->state().result.has_value());
    ResultScreen* screen = view->resultScreen();
    QTRY_VERIFY(screen->preview()->renderedPreview().has_value());
    save(window, "result-screen");

    // The smallest window still fits everything across.
    window->resize(window->minimumSize());
    QTRY_COMPARE(window->size(), window->minimumSize());
    QVERIFY(screen->scrollArea()->widget()->width() <= screen->scrollArea()->viewport()->width());
    save(window, "result-screen-smallest");
    window->resize(1040, 820);

    // The whole result, top to bottom, with the raw metadata open.
    screen->rawMetadataBlock()->setExpanded(true);
    QWidget* content = screen->scrollArea()->widget();
    content->adjustSize();
    QApplication::processEvents();
    save(content, "result-full");

    // The overlay over the previous result while the next inspection runs.
    screen->scrollToAnchor(QStringLiteral("pageTop"), false);
    QSignalSpy finished(view, &ContentView::inspectionFinished);
    view->startInspection(fixture("empty.txt"));
    save(window, "inspecting");
    view->progressOverlay()->setProgress(123456);  // as a long folder walk shows it
    save(window, "inspecting-folder");
    QVERIFY(finished.wait(20000));
    SectionCard* health = screen->sectionCard(QStringLiteral("File Health"));
    QVERIFY(health && health->inspectFurtherButton());
    health->inspectFurtherButton()->click();
    QVERIFY(view->healthSheet());
    QVERIFY(QTest::qWaitForWindowExposed(view->healthSheet()));
    save(view->healthSheet(), "health-sheet");
    view->healthSheet()->accept();

    QVERIFY(inspectAndWait(*view, fixture("photo_gps.jpg")));
    QApplication::setPalette(darkPalette());
    QTest::qWait(50);
    QTRY_VERIFY(!screen->sectionCards().isEmpty() && screen->sectionCards().front()->isVisible());
    screen->scrollToAnchor(QStringLiteral("pageTop"), false);
    save(window, "result-screen-dark");
    QApplication::setPalette(QApplication::style()->standardPalette());

    app.showAboutWindow();
    QVERIFY(QTest::qWaitForWindowExposed(app.aboutWindow()));
    save(app.aboutWindow(), "about-window");
  }

  // The sheets of the result screen's actions: comparisons of two pictures and of two texts,
  // a clean copy's outcome and the question asked when no pixel-safe copy can be made.
  void actionSheets() {
    QTemporaryDir temporary;
    const std::filesystem::path folder = temporary.path().toStdString();
    std::ofstream(folder / "draft-1.txt")
        << "Field notes\nMonday: rain\n\nTuesday: sun\nWednesday\n";
    std::ofstream(folder / "draft-2.txt") << "Field notes\nMonday: heavy rain\nTuesday: sun\n";
    const std::filesystem::path data = LUMENSCRIBE_TEST_DATA_DIR;

    LumenscribeApp app;
    MainWindow* window = app.mainWindow();
    window->resize(1040, 820);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window));
    ContentView* view = window->contentView();
    std::optional<std::filesystem::path> answer;
    view->setFileChooser(
        [&answer](const FileRequest&, QWidget*, FileChosen chosen) { chosen(answer); });
    QSignalSpy finished(view, &ContentView::actionFinished);

    const auto compare = [&](const std::filesystem::path& first,
                             const std::filesystem::path& second, const char* name) {
      QVERIFY(inspectAndWait(*view, first));
      answer = second;
      view->resultScreen()->actionButton(QStringLiteral("Compare"))->click();
      QVERIFY(finished.wait(20000));
      ComparisonSheet* sheet = view->comparisonSheet();
      QVERIFY(sheet);
      QVERIFY(QTest::qWaitForWindowExposed(sheet));
      QTest::qWait(50);  // text fields fit their height once they know their width
      save(sheet, name);
      sheet->accept();
    };
    compare(data / "image/png_with_exif.png", data / "image/pixels_only.png",
            "comparison-pictures");
    compare(folder / "draft-1.txt", folder / "draft-2.txt", "comparison-texts");

    // While a comparison runs, the top card says so.
    QVERIFY(inspectAndWait(*view, fixture("photo_gps.jpg")));
    QTest::qWait(50);
    answer = fixture("rotated.jpg");
    view->resultScreen()->actionButton(QStringLiteral("Compare"))->click();
    save(window, "result-screen-comparing");
    QTRY_VERIFY_WITH_TIMEOUT(view->comparisonSheet(), 20000);
    view->comparisonSheet()->accept();

    answer = folder / "photo_gps-clean.jpg";
    view->resultScreen()->actionButton(QStringLiteral("Create Clean Copy"))->click();
    QVERIFY(finished.wait(20000));
    QVERIFY(view->cleanCopySheet());
    QVERIFY(QTest::qWaitForWindowExposed(view->cleanCopySheet()));
    QTest::qWait(50);
    save(view->cleanCopySheet(), "clean-copy-saved");
    view->cleanCopySheet()->accept();

    QVERIFY(inspectAndWait(*view, data / "image/photo.tif"));
    answer = folder / "photo-clean.tif";
    view->resultScreen()->actionButton(QStringLiteral("Create Clean Copy"))->click();
    QVERIFY(finished.wait(20000));
    QVERIFY(view->cleanCopyQuestion());
    QVERIFY(QTest::qWaitForWindowExposed(view->cleanCopyQuestion()));
    save(view->cleanCopyQuestion(), "clean-copy-question");
  }

  // The window at its smallest, the progress card of a long fingerprint with Cancel (and the
  // note a second drop brings), the focus ring beside the default button, and the result
  // screen under a drag.
  void smallWindowProgressAndFocus() {
    QTemporaryDir temporary;
    const std::filesystem::path big = temporary.filePath(QStringLiteral("big.bin")).toStdString();
    std::ofstream{big}.close();
    std::filesystem::resize_file(big, std::uintmax_t{2} << 30);  // sparse: slow to read only

    LumenscribeApp app;
    MainWindow* window = app.mainWindow();
    window->resize(window->minimumSize());
    window->show();
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window));
    ContentView* view = window->contentView();
    save(window, "small-drop-screen");
    QVERIFY(inspectAndWait(*view, fixture("photo_gps.jpg")));
    QTRY_VERIFY(view->resultScreen()->preview()->renderedPreview().has_value());
    save(window, "small-result-screen");
    // The whole page at that width, every card reflowed.
    QWidget* content = view->resultScreen()->scrollArea()->widget();
    content->resize(content->width(), content->layout()->totalHeightForWidth(content->width()));
    QApplication::processEvents();
    save(content, "small-result-full");

    // Tab to "Save Report": its ring beside the default "Inspect Another File".
    window->resize(1040, 700);
    QApplication::processEvents();
    for (int i = 0; i < 3; ++i) QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), view->resultScreen()->actionButton("Save Report"));
    save(window, "focus-ring");

    QMimeData drag;
    drag.setUrls({QUrl::fromLocalFile(QString::fromStdString(fixture("notes.txt").string()))});
    QDragEnterEvent enter(QPoint(500, 400), Qt::CopyAction, &drag, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view, &enter);
    save(window, "result-screen-targeted");
    QDragLeaveEvent leave;
    QApplication::sendEvent(view, &leave);

    view->startInspection(big);
    QTRY_VERIFY_WITH_TIMEOUT(view->progressOverlay()->countLabel()->isVisible(), 10000);
    QDragEnterEvent refused(QPoint(500, 400), Qt::CopyAction, &drag, Qt::LeftButton,
                            Qt::NoModifier);
    QApplication::sendEvent(view, &refused);
    save(window, "inspecting-progress");
    view->cancelInspection();
    QThreadPool::globalInstance()->waitForDone();
  }
};

QTEST_MAIN(ScreenshotTest)
#include "screenshot_test.moc"
