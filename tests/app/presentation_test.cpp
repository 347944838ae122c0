// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The window's choosing rules: preview icons and the icon table.
#include "app/presentation.h"

#include <QtTest>
#include <set>

#include "app/icon_map.h"
#include "app/icons.h"
#include "lumenscribe/file_inspector.h"
#include "platform/mime_database.h"

using namespace lumenscribe;
using namespace lumenscribe::app;

class PresentationTest : public QObject {
  Q_OBJECT

 private slots:
  void previewIconsFollowTheFirstMatchingRule() {
    const auto type = [](const char* name) { return platform::contentTypeForName(name); };
    QVERIFY(type("audio/mpeg") && type("application/zip") && type("text/x-python"));
    const struct {
      PreviewKindFacts facts;
      std::string_view symbol;
    } cases[] = {
        {{true, true, "app", std::nullopt}, "shippingbox.fill"},
        {{true, false, "app", platform::directoryContentType()}, "folder.fill"},
        {{false, false, "ZIP", std::nullopt}, "archivebox.fill"},
        {{false, false, "jar", type("application/x-java-archive")}, "archivebox.fill"},
        {{false, false, "mp3", type("audio/mpeg")}, "waveform"},
        {{false, false, "mkv", type("video/x-matroska")}, "film.fill"},
        {{false, false, "txt", type("text/plain")}, "doc.text.fill"},
        // Program sources are text as well, and the text rule comes first.
        {{false, false, "py", type("text/x-python")}, "doc.text.fill"},
        {{false, false, "app", std::nullopt}, "app.fill"},
        {{false, false, "dmg", std::nullopt}, "shippingbox.fill"},
        {{false, false, "jpg", type("image/jpeg")}, "photo.fill"},
        {{false, false, "pdf", type("application/pdf")}, "doc.richtext.fill"},
        {{false, false, "", std::nullopt}, "doc.fill"},
    };
    for (const auto& [facts, symbol] : cases) {
      QCOMPARE(previewSymbolFor(facts), symbol);
    }
  }

  void everyMappedIconIsCompiledInAndUnknownNamesFallBack() {
    for (const IconMapping& mapping : iconMappings()) {
      QVERIFY2(hasSymbolIcon(mapping.symbolName), mapping.symbolName.data());
      const QImage image = symbolPixmap(mapping.symbolName, Qt::red, 24, 1.0).toImage();
      bool drawn = false;
      for (int y = 0; y < image.height() && !drawn; ++y) {
        for (int x = 0; x < image.width() && !drawn; ++x) drawn = qAlpha(image.pixel(x, y)) > 0;
      }
      QVERIFY2(drawn, mapping.symbolName.data());
    }
    QCOMPARE(lucideNameFor("no.such.symbol"), lucideNameFor("doc.fill"));
    QVERIFY(hasSymbolIcon("no.such.symbol"));
    // Every icon that a result of a real file names has its own drawing, not the fallback's.
    const std::filesystem::path data = LUMENSCRIBE_TEST_DATA_DIR;
    const FileInspector inspector;
    std::set<std::string> used;
    std::vector<std::filesystem::path> items = {data / "containers",
                                                data / "containers" / "listing.zip"};
    for (const char* folder : {"health", "image"}) {
      for (const auto& entry : std::filesystem::directory_iterator(data / folder)) {
        items.push_back(entry.path());
      }
    }
    for (const auto& item : items) {
      const auto result = inspector.inspect(item);
      QVERIFY(result);
      for (const InsightSection& section : result->sections) used.insert(section.systemImage);
    }
    QVERIFY(used.size() >= 10);
    for (const std::string& symbol : used) {
      QVERIFY2(symbol == "doc.fill" || lucideNameFor(symbol) != lucideNameFor("doc.fill"),
               symbol.c_str());
    }
  }
};

QTEST_MAIN(PresentationTest)
#include "presentation_test.moc"
