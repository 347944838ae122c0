// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The top card's preview: pictures, PDF page 0, and everything that has none.
#include "app/preview_loader.h"

#include <QPainter>
#include <QPdfWriter>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "app_test_support.h"

using namespace lumenscribe::app;
using lumenscribe::app::testing::fixture;

namespace {

std::filesystem::path writePdf(const QTemporaryDir& folder, const char* name) {
  const QString path = folder.filePath(QLatin1String(name));
  QPdfWriter writer(path);
  writer.setPageSize(QPageSize(QPageSize::A4));
  QPainter painter(&writer);
  painter.fillRect(QRect(0, 0, writer.width(), writer.height() / 3), Qt::darkBlue);
  painter.drawText(QPoint(200, writer.height() / 2), QStringLiteral("Quarterly figures"));
  painter.end();
  return path.toStdString();
}

lumenscribe::platform::DecoderClient& decoder() {
  static lumenscribe::platform::DecoderClient client;
  return client;
}

QImage previewOf(const std::filesystem::path& path, QSize box) {
  const auto item = lumenscribe::platform::openItem(path);
  return item ? loadPreviewImage(*item, decoder(), box) : QImage();
}

std::shared_ptr<const lumenscribe::platform::OpenedItem> opened(const std::filesystem::path& path) {
  auto item = lumenscribe::platform::openItem(path);
  if (!item) return nullptr;
  return std::make_shared<const lumenscribe::platform::OpenedItem>(std::move(item).value());
}

bool allWhite(const QImage& image) {
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixel(x, y) != qRgb(255, 255, 255)) return false;
    }
  }
  return true;
}

}  // namespace

class PreviewLoaderTest : public QObject {
  Q_OBJECT

 private slots:
  void picturesAreScaledToFitAndTurnedUpright() {
    const QSize box(150, 110);
    const QImage photo = previewOf(fixture("photo_gps.jpg"), box);
    QCOMPARE(photo.height(), 110);  // 640 x 480 fitted into the box
    QVERIFY(qAbs(photo.width() - 147) <= 1);
    // Stored sideways with orientation 6: shown upright, so taller than wide.
    const QImage rotated = previewOf(fixture("rotated.jpg"), box);
    QVERIFY(!rotated.isNull());
    QVERIFY(rotated.height() > rotated.width());
    QVERIFY(rotated.width() <= box.width() && rotated.height() <= box.height());
  }

  void pdfsShowPageZeroUnlessLocked() {
    QTemporaryDir folder;
    const std::filesystem::path pdf = writePdf(folder, "report.pdf");
    const QImage page = previewOf(pdf, QSize(150, 110));
    QVERIFY(!page.isNull());
    QVERIFY(page.width() <= 150 && page.height() <= 110);
    QVERIFY(page.height() == 110 || page.width() == 150);
    QVERIFY(!allWhite(page));

    // A PDF only by name gives no preview and no crash.
    const QString fake = folder.filePath("fake.pdf");
    QFile file(fake);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("%PDF-1.7\nnot really\n");
    file.close();
    QVERIFY(previewOf(fake.toStdString(), QSize(150, 110)).isNull());
  }

  void foldersAndTextHaveNoPicture() {
    QVERIFY(previewOf(fixture("notes.txt"), QSize(150, 110)).isNull());
    QVERIFY(previewOf(fixture("empty.txt"), QSize(150, 110)).isNull());
    QVERIFY(previewOf(fixture(""), QSize(150, 110)).isNull());
  }

  void theSameItemIsNotLoadedTwice() {
    CachedFilePreview preview;
    preview.setDecoder(std::shared_ptr<lumenscribe::platform::DecoderClient>(
        &decoder(), [](lumenscribe::platform::DecoderClient*) {}));
    QSignalSpy loaded(&preview, &CachedFilePreview::previewLoaded);
    preview.setItem(opened(fixture("photo_gps.jpg")), "photo.fill");
    QVERIFY(preview.isLoading());
    QVERIFY(loaded.wait(10000));
    QVERIFY(preview.renderedPreview());
    preview.setItem(opened(fixture("photo_gps.jpg")), "photo.fill");
    QVERIFY(!preview.isLoading());
    QVERIFY(preview.renderedPreview());

    // Another item starts over, and a folder shows its icon.
    preview.setItem(opened(fixture("notes.txt")), "doc.text.fill");
    QVERIFY(!preview.renderedPreview());
    QVERIFY(loaded.wait(10000));
    QVERIFY(!preview.renderedPreview());
    QCOMPARE(preview.fallbackSymbol(), std::string("doc.text.fill"));
    preview.setItem(opened(LUMENSCRIBE_APP_FIXTURES_DIR), "folder.fill");
    QVERIFY(!preview.renderedPreview());
    QCOMPARE(preview.loadedUrl(),
             std::optional(std::filesystem::path(LUMENSCRIBE_APP_FIXTURES_DIR)));
  }
};

QTEST_MAIN(PreviewLoaderTest)
#include "preview_loader_test.moc"
