// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "health/health_assessment.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>

#include "platform/mime_database.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

using test::TempDir;

const std::filesystem::path kFixtures = std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health";

constexpr const char* kDamage = "exclamationmark.triangle.fill";
constexpr const char* kLimited = "stethoscope";
constexpr const char* kIntact = "checkmark.shield.fill";

struct Expected {
  std::string file;
  std::string verdict;
  std::string structureLabel;
  std::string structureValue;
  std::string icon;
  std::string detail;
};

Accumulators assess(const std::filesystem::path& file) {
  Accumulators accumulators;
  assessFileHealth(test::openedItem(file), test::sharedDecoder(), accumulators);
  return accumulators;
}

void expectVerdict(const Accumulators& accumulators, const Expected& want) {
  ASSERT_EQ(accumulators.sections.size(), 1u);
  const InsightSection& section = accumulators.sections[0];
  EXPECT_EQ(section.title, "File Health");
  EXPECT_EQ(section.systemImage, want.icon);
  ASSERT_EQ(section.rows.size(), 3u);
  EXPECT_EQ(section.rows[0].label, "Assessment");
  EXPECT_EQ(section.rows[0].value, want.verdict);
  EXPECT_EQ(section.rows[1].label, "Readable");
  EXPECT_EQ(section.rows[1].value, "Yes");
  EXPECT_EQ(section.rows[2].label, want.structureLabel);
  EXPECT_EQ(section.rows[2].value, want.structureValue);
  EXPECT_EQ(accumulators.summaryItems, std::vector<std::string>{"File Health"});
  const RawMetadata raw = {{"File Health Assessment", want.verdict},
                           {"File Health Detail", want.detail}};
  EXPECT_EQ(accumulators.rawMetadata, raw);
  if (want.verdict == "Looks intact") {
    EXPECT_TRUE(accumulators.findings.empty());
  } else {
    ASSERT_EQ(accumulators.findings.size(), 1u);
    EXPECT_EQ(accumulators.findings[0].title, want.verdict);
    EXPECT_EQ(accumulators.findings[0].detail, want.detail);
    EXPECT_EQ(accumulators.findings[0].level,
              want.icon == kDamage ? PrivacyLevel::sensitive : PrivacyLevel::notice);
  }
}

const std::string kIntactDetail = "Lumenscribe did not find an obvious structural problem.";

TEST(HealthAssessment, imagesAreJudgedByDecodingThem) {
  const std::string truncated =
      "The image appears truncated; the image decoder reached the end of the file "
      "unexpectedly.";
  const std::string incomplete = "The image decoder reports that the image data is incomplete.";
  const std::string invalid = "The image decoder reports invalid image data.";
  const Expected cases[] = {
      {"intact.jpg", "Looks intact", "Image Structure", "Complete", kIntact, kIntactDetail},
      {"intact.png", "Looks intact", "Image Structure", "Complete", kIntact, kIntactDetail},
      {"truncated_at_50_percent.jpg", "Possible damage", "Image Structure", "Incomplete", kDamage,
       incomplete},
      {"truncated_at_95_percent.jpg", "Possible damage", "Image Structure", "Incomplete", kDamage,
       incomplete},
      {"cut_short.png", "Possible damage", "Image Structure", "Incomplete", kDamage, incomplete},
      {"scan_data_overwritten.jpg", "Possible damage", "Image Structure", "Invalid data", kDamage,
       invalid},
      {"broken_idat_crc.png", "Possible damage", "Image Structure", "Invalid data", kDamage,
       invalid},
      {"truncated_in_header.jpg", "Possible damage", "Image Structure", "Unexpected end of file",
       kDamage, truncated},
      {"truncated.webp", "Possible damage", "Image Structure", "Unexpected end of file", kDamage,
       truncated},
      {"photo.jpg", "Possible damage", "Image Structure", "No readable image", kDamage,
       "The image decoder found no readable image frames."},
      // We cannot decode a BMP: that limits the check, it is no sign of damage.
      {"unsupported.bmp", "Verification limited", "Image Structure", "Unknown type", kLimited,
       "The image decoder could not determine a supported image type."},
      // The content decides: a PNG named notes.txt is decoded as the PNG it is.
      {"notes.txt", "Looks intact", "Image Structure", "Complete", kIntact, kIntactDetail},
  };
  for (const Expected& want : cases) {
    SCOPED_TRACE(want.file);
    expectVerdict(assess(kFixtures / want.file), want);
  }
}

TEST(HealthAssessment, pdfsAndZipsAreJudgedByTheirOwnChecks) {
  const std::string cannotOpen =
      "The file identifies as a PDF, but the PDF reader could not open its document "
      "structure.";
  const Expected cases[] = {
      {"one_page.pdf", "Looks intact", "PDF Structure", "1 page readable", kIntact, kIntactDetail},
      {"three_pages.pdf", "Looks intact", "PDF Structure", "3 pages readable", kIntact,
       kIntactDetail},
      // An owner password alone leaves the document open: it is judged by its pages.
      {"encrypted_owner_password_only.pdf", "Looks intact", "PDF Structure", "1 page readable",
       kIntact, kIntactDetail},
      {"encrypted_user_password.pdf", "Verification limited", "PDF Structure", "Locked / encrypted",
       kLimited,
       "The PDF is encrypted and locked, so Lumenscribe cannot fully verify its internal "
       "contents."},
      {"zero_pages.pdf", "Possible damage", "PDF Structure", "No readable pages", kDamage,
       "The file identifies as a PDF, but Lumenscribe could not find a readable page structure."},
      {"not_a_pdf.pdf", "Possible damage", "PDF Structure", "Could not open", kDamage, cannotOpen},
      // A ZIP named report.pdf gets the ZIP test, which it passes.
      {"report.pdf", "Looks intact", "ZIP Structure", "Integrity test passed", kIntact,
       kIntactDetail},
      {"intact.zip", "Looks intact", "ZIP Structure", "Integrity test passed", kIntact,
       kIntactDetail},
      {"password_protected.zip", "Verification limited", "ZIP Structure",
       "Encrypted / password required", kLimited,
       "The ZIP appears encrypted or password-protected, so Lumenscribe could not fully verify "
       "its contents."},
      {"truncated.zip", "Possible damage", "ZIP Structure", "Integrity test failed", kDamage,
       "The ZIP archive did not pass its integrity test and may be damaged or truncated."},
      {"archive.zip", "Possible damage", "ZIP Structure", "Integrity test failed", kDamage,
       "The ZIP archive did not pass its integrity test and may be damaged or truncated."},
  };
  for (const Expected& want : cases) {
    SCOPED_TRACE(want.file);
    expectVerdict(assess(kFixtures / want.file), want);
  }
}

TEST(HealthAssessment, theCheckFollowsTheContentAndTheNameOnlyWhenTheContentIsUnknown) {
  TempDir dir;
  const auto zipBytes = [] {
    std::ifstream in(kFixtures / "intact.zip", std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }();
  const std::string binary(64, '\x02');
  struct Case {
    std::filesystem::path file;
    std::string structureLabel;
  };
  const Case cases[] = {
      {dir.write("bundle.epub2", zipBytes), "ZIP Structure"},
      {dir.write("Backup.ZIP", zipBytes), "ZIP Structure"},
      // Text proves no format: the name decides, as it does for unknown bytes.
      {dir.write("Scan.PDF", "not a pdf"), "PDF Structure"},
      {dir.write("frame.png", "not an image"), "Image Structure"},
      {dir.write("Scan.pdf", binary), "PDF Structure"},
      {dir.write("song.ogg", binary), "Media Structure"},
      {dir.write("notes.txt.gz", binary), "Compressed Stream"},
      {dir.write("letter.docx", binary), "ZIP Structure"},
      // A playlist is text the database files under audio: read, not demuxed.
      {dir.write("mix.m3u", "#EXTM3U\nsong.ogg\n"), "Basic Read Test"},
      {dir.write("notes.dat", binary), "Basic Read Test"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file.filename().string());
    EXPECT_EQ(assess(c.file).sections.at(0).rows.at(2).label, c.structureLabel);
  }
}

TEST(HealthAssessment, emptyAndOneByteFilesNeedNoFormatCheck) {
  TempDir dir;
  expectVerdict(assess(kFixtures / "empty.jpg"),
                {"", "Empty file", "Structure", "No content", kLimited,
                 "This file contains zero bytes. That may be intentional, but it has no "
                 "content to inspect."});
  expectVerdict(assess(dir.write("one", "x")),
                {"", "Looks intact", "Basic Read Test", "Passed", kIntact, kIntactDetail});
}

TEST(HealthAssessment, aFileThatShrankSinceItWasOpenedIsAReadProblem) {
  TempDir dir;
  const auto file = dir.write("notes.txt", std::string(4096, 'a'));
  const platform::OpenedItem item = test::openedItem(file);
  std::filesystem::resize_file(file, 100);
  Accumulators accumulators;
  assessFileHealth(item, test::sharedDecoder(), accumulators);
  expectVerdict(accumulators, {"", "Possible read problem", "Basic Read Test", "Failed", kDamage,
                               "Lumenscribe could not read both the beginning and end of this "
                               "file."});
}

TEST(HealthAssessment, unreadableFileIsReportedBeforeAnyCheck) {
  if (test::runningAsRoot()) GTEST_SKIP() << "root reads every file";
  TempDir dir;
  const auto file = dir.write("locked.jpg", "secret");
  ASSERT_EQ(::chmod(file.c_str(), 0), 0);
  const Accumulators accumulators = assess(file);
  const auto& rows = accumulators.sections.at(0).rows;
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].value, "Unreadable");
  EXPECT_EQ(rows[1].value, "No");
  EXPECT_EQ(rows[2].label, "Structure");
  EXPECT_EQ(rows[2].value, "Could not verify");
  EXPECT_EQ(accumulators.findings.at(0).level, PrivacyLevel::sensitive);
}

TEST(HealthAssessment, aDecoderThatCannotStartLimitsTheVerdict) {
  platform::DecoderClient missing({"/nonexistent/lumenscribe-decoder", std::chrono::seconds(5)});
  for (const char* file : {"intact.jpg", "one_page.pdf"}) {
    SCOPED_TRACE(file);
    Accumulators accumulators;
    assessFileHealth(test::openedItem(kFixtures / file), missing, accumulators);
    const auto& rows = accumulators.sections.at(0).rows;
    EXPECT_EQ(rows.at(0).value, "Verification limited");
    EXPECT_EQ(rows.at(2).value, "Could not check");
  }
}

TEST(BasicReadTest, readsTheFirstAndTheLastByteOfTheItemAsOpened) {
  TempDir dir;
  const auto file = dir.write("ten", "0123456789");
  EXPECT_TRUE(basicReadTest(test::openedItem(file)));
  EXPECT_FALSE(basicReadTest(test::openedItem(dir.write("empty", ""))));
  EXPECT_FALSE(basicReadTest(test::openedItem(dir.path())));

  const platform::OpenedItem grown = test::openedItem(file);
  std::ofstream(file, std::ios::app) << "more";
  EXPECT_TRUE(basicReadTest(grown));
  const platform::OpenedItem shrunk = test::openedItem(file);
  std::filesystem::resize_file(file, 13);
  EXPECT_FALSE(basicReadTest(shrunk));
}

TEST(ZipIntegrity, testsTheNamedArchiveEvenWhenItsNameLooksLikeAPattern) {
  TempDir dir;
  const auto bytes = [](const char* name) {
    std::ifstream in(kFixtures / name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  };
  // unzip alone would take "x[1].zip" and "y*.zip" as patterns and test x1.zip and yz.zip.
  dir.write("x1.zip", bytes("password_protected.zip"));
  dir.write("yz.zip", bytes("password_protected.zip"));
  for (const char* name : {"x[1].zip", "y*.zip", "why?.zip"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(testZipIntegrity(test::openedItem(dir.write(name, bytes("intact.zip")))).status,
              "Integrity test passed");
  }
}

TEST(ZipIntegrity, aToolThatCannotStartLimitsTheCheckInsteadOfFailingIt) {
  const StructureCheckResult result =
      testZipIntegrity(test::openedItem(kFixtures / "intact.zip"), "/nonexistent/bin/unzip");
  EXPECT_EQ(
      result,
      (StructureCheckResult{
          "Could not test", "Lumenscribe could not run the ZIP integrity test.", false, true, {}}));

  const StructureCheckResult passed = testZipIntegrity(test::openedItem(kFixtures / "intact.zip"));
  EXPECT_EQ(passed.status, "Integrity test passed");
  EXPECT_FALSE(passed.isProblem || passed.isLimited);
}

}  // namespace
}  // namespace lumenscribe
