// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The window's choosing rules: preview icons and the icon table.
#include "app/presentation.h"

#include <QtTest>

#include "app/icon_map.h"
#include "app/icons.h"
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
    // Every icon the result model and the window name is in the table.
    for (const char* used : {"doc.fill",
                             "folder.fill",
                             "fingerprint",
                             "location.fill",
                             "camera.fill",
                             "photo.fill",
                             "person.text.rectangle.fill",
                             "film.fill",
                             "waveform",
                             "music.note.list",
                             "text.alignleft",
                             "doc.richtext.fill",
                             "rectangle.stack.fill",
                             "doc.text.magnifyingglass",
                             "info.square.fill",
                             "arrow.down.doc.fill",
                             "archivebox.fill",
                             "folder.badge.gearshape",
                             "list.bullet.indent",
                             "checkmark.shield.fill",
                             "checkmark.seal.fill",
                             "exclamationmark.triangle.fill",
                             "stethoscope",
                             "sparkles"}) {
      QVERIFY2(lucideNameFor(used) != "file" || std::string_view(used) == "doc.fill", used);
    }
  }
};

QTEST_MAIN(PresentationTest)
#include "presentation_test.moc"
