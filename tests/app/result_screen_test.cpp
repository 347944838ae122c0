// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The result screen drawn from results built by hand, for the cases no fixture produces
// yet (camera and video sections, container inventories, doubtful health, many findings).
#include "app/result_screen.h"

#include <QApplication>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QtTest>

#include "app/card.h"
#include "app/pills.h"
#include "app/privacy_card.h"
#include "app/raw_metadata_block.h"
#include "app/section_card.h"
#include "app/theme.h"
#include "app_test_support.h"
#include "lumenscribe/file_inspector.h"

using namespace lumenscribe;
using namespace lumenscribe::app;
using lumenscribe::app::testing::section;

namespace {

LumenscribeResult resultWith(std::vector<InsightSection> sections,
                             std::vector<PrivacyFinding> findings = {}, RawMetadata raw = {}) {
  std::vector<std::string> items;
  std::int64_t count = 0;
  for (const InsightSection& s : sections) {
    items.push_back(s.title);
    count += static_cast<std::int64_t>(s.rows.size());
  }
  if (findings.empty()) {
    findings.emplace_back("No obvious high-interest metadata found", "Nothing.",
                          PrivacyLevel::neutral);
  }
  return LumenscribeResult("/tmp/made-by-hand.jpg", "made-by-hand.jpg", "JPEG image", count, items,
                           std::move(sections), std::move(findings), std::move(raw));
}

InsightSection cameraSection() {
  return section("Camera", "camera.fill",
                 {{"Exposure Program", "Aperture priority"},
                  {"Camera", "FX-100"},
                  {"Make", "Fixture Optics"},
                  {"Metering Mode", "Pattern"},
                  {"ISO", "100"},
                  {"Flash", "Off"},
                  {"Captured", "Jun 1, 2024"}});
}

QStringList texts(const QList<PillButton*>& pills) {
  QStringList result;
  for (const PillButton* pill : pills) result << pill->text();
  return result;
}

}  // namespace

class ResultScreenTest : public QObject {
  Q_OBJECT

 private slots:
  void sectionsKeepTheResultsOrderUnderTheirAnchors() {
    ResultScreen screen;
    screen.resize(960, 700);
    screen.showResult(
        resultWith(
            {section("File", "doc.fill", {{"Name", "a"}}),
             section("Identity & Integrity", "fingerprint", {{"SHA-256", "ab12"}, {"Owner", "me"}}),
             section("Software / Tools", "no.such.symbol", {{"Software", "x"}})}),
        {});
    QStringList anchors;
    for (const SectionCard* card : screen.sectionCards()) anchors << card->objectName();
    QCOMPARE(anchors, (QStringList{"section-file", "section-identity-and-integrity",
                                   "section-software---tools"}));
    // The fingerprint row reads as in the report; the other labels are unchanged.
    QCOMPARE(screen.sectionCard("Identity & Integrity")->visibleRowLabels(),
             (QStringList{"Digital Fingerprint (SHA-256)", "Owner"}));
    QCOMPARE(texts(screen.summaryPills()),
             (QStringList{"File", "Identity & Integrity", "Software / Tools"}));
    QVERIFY(screen.anchorWidget("pageTop"));
    QVERIFY(screen.anchorWidget("sharingPrivacy"));
  }

  // The accent a card is drawn in, read back from the pixels of its icon badge: the one
  // whose colour comes closest to a pixel of the badge.
  void cardsOfARealPhotoAreDrawnInTheAccentOfTheirSection() {
    const auto result = FileInspector().inspect(testing::fixture("photo_gps.jpg"));
    QVERIFY(result);
    ResultScreen screen;
    screen.resize(960, 700);
    screen.showResult(*result, {});
    screen.show();
    QVERIFY(QTest::qWaitForWindowExposed(&screen));
    const auto drawnAccent = [&](const char* title) {
      const QImage image = screen.sectionCard(title)->findChild<IconBadge*>()->grab().toImage();
      std::optional<Accent> closest;
      int best = INT_MAX;
      for (const Accent accent :
           {Accent::blue, Accent::purple, Accent::indigo, Accent::teal, Accent::orange,
            Accent::green, Accent::cyan, Accent::mint, Accent::red, Accent::system}) {
        const QColor want = accentColor(accent, screen.palette());
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
    };
    const std::pair<const char*, Accent> cases[] = {
        {"File", Accent::system},
        {"Identity & Integrity", Accent::cyan},
        {"Type Verification", Accent::orange},
        {"File Health", Accent::green},
        {"Camera", Accent::blue},
        {"Location", Accent::blue},
    };
    for (const auto& [title, accent] : cases) {
      QVERIFY2(screen.sectionCard(title), title);
      QVERIFY2(drawnAccent(title) == accent, title);
    }
  }

  void cameraAndVideoShowTheirEssentialsUntilExpanded() {
    ResultScreen screen;
    const InsightSection video = section("Video", "film.fill",
                                         {{"Bit Rate", "4 Mbps"},
                                          {"Duration", "0:10"},
                                          {"Codec", "avc1"},
                                          {"Color Primaries", "bt709"},
                                          {"Video Tracks", "1"},
                                          {"Audio Tracks", "0"}});
    screen.showResult(resultWith({cameraSection(), video}), {});
    SectionCard* camera = screen.sectionCard("Camera");
    QCOMPARE(camera->visibleRowLabels(), (QStringList{"Camera", "Make", "ISO", "Captured"}));
    QCOMPARE(camera->captionLabel()->text(), QStringLiteral("Camera essentials"));
    QCOMPARE(camera->detailButton()->text(), QStringLiteral("Dive Deeper"));

    QSignalSpy toggled(&screen, &ResultScreen::detailsToggleRequested);
    QTest::mouseClick(camera->detailButton(), Qt::LeftButton);
    QCOMPARE(toggled.count(), 1);
    QCOMPARE(toggled.at(0).at(0).value<DetailKind>(), DetailKind::camera);
    // The window answers by expanding the camera card only.
    screen.setDetailsShown(DetailKind::camera, true);
    QCOMPARE(camera->visibleRowLabels(),
             (QStringList{"Camera", "Make", "ISO", "Captured", "Exposure Program", "Metering Mode",
                          "Flash"}));
    QCOMPARE(camera->detailButton()->text(), QStringLiteral("Show Less"));

    SectionCard* videoCard = screen.sectionCard("Video");
    QCOMPARE(videoCard->visibleRowLabels(),
             (QStringList{"Duration", "Codec", "Video Tracks", "Audio Tracks"}));
    // Expanding one kind leaves the other as it was.
    QCOMPARE(videoCard->detailButton()->text(), QStringLiteral("Dive Deeper"));
    screen.setDetailsShown(DetailKind::video, true);
    QCOMPARE(videoCard->visibleRowLabels().size(), 6);
  }

  void inspectFurtherIsOfferedOnlyForDoubtfulHealth() {
    const auto health = [](const char* assessment) {
      return section(
          "File Health", "stethoscope",
          {{"Assessment", assessment}, {"Readable", "Yes"}, {"Image Structure", "Decode failed"}});
    };
    ResultScreen screen;
    screen.showResult(resultWith({health("Looks intact")}), {});
    QVERIFY(!screen.sectionCard("File Health")->inspectFurtherButton());

    screen.showResult(resultWith({health("Possible damage")}), {});
    PillButton* button = screen.sectionCard("File Health")->inspectFurtherButton();
    QVERIFY(button);
    QCOMPARE(button->text(), QStringLiteral("Inspect Further"));
    std::vector<InsightSection> requested;
    connect(&screen, &ResultScreen::inspectFurtherRequested, this,
            [&requested](const InsightSection& asked) { requested.push_back(asked); });
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(requested.size(), std::size_t{1});
    QCOMPARE(requested.front().rows.front().value, "Possible damage");

    // A section of another title never offers it, whatever its rows say.
    screen.showResult(
        resultWith({section("Other", "doc.fill", {{"Assessment", "Possible damage"}})}), {});
    QVERIFY(!screen.sectionCard("Other")->inspectFurtherButton());
  }

  void severityPillsAndPrivacyCountsFollowTheFindings() {
    ResultScreen screen;
    screen.resize(960, 700);
    screen.showResult(
        resultWith({section("Location", "location.fill", {{"Latitude", "48.8584"}})},
                   {PrivacyFinding("Location data is embedded", "GPS.", PrivacyLevel::notice),
                    PrivacyFinding("Camera details are visible", "Body.", PrivacyLevel::notice)}),
        {});
    const QList<PillButton*> pills = screen.severityPills();
    QCOMPARE(texts(pills), (QStringList{"Info", "Caution", "Warning"}));
    QCOMPARE(pills[1]->toolTip(), QStringLiteral("Jump to Sharing & Privacy"));
    QVERIFY(pills[0]->isMuted() && !pills[1]->isMuted() && pills[2]->isMuted());
    QCOMPARE(screen.verdictLabel()->text(), QStringLiteral("Review suggested"));
    QCOMPARE(screen.privacyCard()->countTexts(), QStringList{"2 CAUTION"});
    QCOMPARE(screen.privacyCard()->findingBadges(), (QStringList{"CAUTION", "CAUTION"}));

    screen.show();
    QVERIFY(QTest::qWaitForWindowExposed(&screen));
    QScrollBar* bar = screen.scrollArea()->verticalScrollBar();
    QTest::mouseClick(pills[1], Qt::LeftButton);
    QTRY_VERIFY(bar->value() > 0);
    QTRY_COMPARE(
        bar->value(),
        qMin(bar->maximum(),
             screen.privacyCard()->mapTo(screen.scrollArea()->widget(), QPoint()).y() - 12));
    // A muted pill goes nowhere.
    screen.scrollToAnchor("pageTop", false);
    QTest::mouseClick(pills[2], Qt::LeftButton);
    QTest::qWait(350);
    QCOMPARE(bar->value(), 0);
  }

  void containerCountsAreAlsoShownAsTiles() {
    ResultScreen screen;
    screen.showResult(resultWith({section("Safe Inspection", "checkmark.shield.fill",
                                          {{"Hidden Items", "2"},
                                           {"Total Items", "9"},
                                           {"Images", "4"},
                                           {"Double Extensions", "1"}})}),
                      {});
    QWidget* tiles =
        screen.sectionCard("Safe Inspection")->findChild<QWidget*>("containerHighlights");
    QVERIFY(tiles);
    QStringList shown;
    for (const QLabel* label : tiles->findChildren<QLabel*>()) shown << label->text();
    QCOMPARE(shown, (QStringList{"2", "Hidden Items", "4", "Images", "1", "Double Extensions"}));
    screen.showResult(resultWith({section("File", "doc.fill", {{"Name", "x"}})}), {});
    QVERIFY(!screen.sectionCard("File")->findChild<QWidget*>("containerHighlights"));
  }

  void longValuesWrapInsteadOfWideningTheScreen() {
    ResultScreen screen;
    screen.resize(960, 700);
    const std::string unbroken(700, 'f');
    const std::string path =
        "/home/someone/" + std::string(40, 'x') + "/" + std::string(60, 'y') + ".jpg";
    RawMetadata raw;
    for (int i = 0; i < 150; ++i) raw["Key " + std::to_string(1000 + i)] = std::string(i * 3, 'v');
    screen.showResult(
        resultWith({section("File", "doc.fill", {{"Path", path}, {"Blob", unbroken}})}, {}, raw),
        {});
    screen.show();
    QVERIFY(QTest::qWaitForWindowExposed(&screen));
    screen.setRawMetadataShown(true);
    QApplication::processEvents();
    QWidget* content = screen.scrollArea()->widget();
    QVERIFY(content->width() <= screen.scrollArea()->viewport()->width());
    const RawMetadataList* list = screen.rawMetadataBlock()->list();
    QVERIFY(list);
    QCOMPARE(list->entryCount(), 150);
    QCOMPARE(list->entry(0).first, QStringLiteral("Key 1000"));
    QVERIFY(list->height() > 150 * 10);

    // Far down, "Return to Top" is wanted; it brings the top back.
    QSignalSpy wanted(&screen, &ResultScreen::returnToTopWanted);
    QScrollBar* bar = screen.scrollArea()->verticalScrollBar();
    bar->setValue(bar->maximum());
    QCOMPARE(wanted.count(), 1);
    QCOMPARE(wanted.at(0).at(0).toBool(), true);
    screen.setReturnToTopShown(true);
    PillButton* back = screen.returnToTopButton();
    QVERIFY(back->isVisible());
    QTest::mouseClick(back, Qt::LeftButton);
    QTRY_COMPARE(bar->value(), 0);
    QCOMPARE(wanted.count(), 2);
    QCOMPARE(wanted.at(1).at(0).toBool(), false);
  }

  void rawMetadataSaysSoWhenThereIsNone() {
    ResultScreen screen;
    screen.showResult(resultWith({section("File", "doc.fill", {{"Name", "x"}})}), {});
    RawMetadataBlock* block = screen.rawMetadataBlock();
    QVERIFY(!block->isExpanded());
    QSignalSpy toggled(&screen, &ResultScreen::rawMetadataToggleRequested);
    QTest::mouseClick(block->findChild<QAbstractButton*>("rawMetadataHeader"), Qt::LeftButton);
    QCOMPARE(toggled.count(), 1);
    QVERIFY(!block->isExpanded());  // only the window's answer expands it
    screen.setRawMetadataShown(true);
    QVERIFY(block->emptyNote());
    QCOMPARE(block->emptyNote()->text(), QStringLiteral("No additional metadata was found."));
    QVERIFY(!block->list());
  }
};

QTEST_MAIN(ResultScreenTest)
#include "result_screen_test.moc"
