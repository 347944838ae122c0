// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "health/health_assessment.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>
#include <map>
#include <set>

#include "platform/mime_database.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

using test::TempDir;

const std::filesystem::path kFixtures = test::kData / "health";

constexpr const char* kDamage = "exclamationmark.triangle.fill";
constexpr const char* kLimited = "stethoscope";
constexpr const char* kIntact = "checkmark.shield.fill";

struct Expected {
  std::string file;
  std::string verdict;
  std::string structureLabel;
  std::string structureValue;
  std::string icon;
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
  EXPECT_EQ(test::block(section.rows), "Assessment: " + want.verdict + "\nReadable: Yes\n" +
                                           want.structureLabel + ": " + want.structureValue + "\n");
  EXPECT_EQ(accumulators.summaryItems, std::vector<std::string>{"File Health"});
  ASSERT_EQ(accumulators.rawMetadata.size(), 2u);
  EXPECT_EQ(accumulators.rawMetadata.at("File Health Assessment"), want.verdict);
  const std::string& detail = accumulators.rawMetadata.at("File Health Detail");
  EXPECT_FALSE(detail.empty());
  if (want.verdict == "Looks intact") {
    EXPECT_TRUE(accumulators.findings.empty());
  } else {
    ASSERT_EQ(accumulators.findings.size(), 1u);
    EXPECT_EQ(accumulators.findings[0].title, want.verdict);
    EXPECT_EQ(accumulators.findings[0].detail, detail);
    EXPECT_EQ(accumulators.findings[0].level,
              want.icon == kDamage ? PrivacyLevel::sensitive : PrivacyLevel::notice);
  }
}

TEST(HealthAssessment, everyFixtureIsJudgedByTheCheckForItsKind) {
  const Expected cases[] = {
      {"intact.jpg", "Looks intact", "Image Structure", "Complete", kIntact},
      {"truncated_at_50_percent.jpg", "Possible damage", "Image Structure", "Incomplete", kDamage},
      {"cut_short.png", "Possible damage", "Image Structure", "Incomplete", kDamage},
      {"scan_data_overwritten.jpg", "Possible damage", "Image Structure", "Invalid data", kDamage},
      {"broken_idat_crc.png", "Possible damage", "Image Structure", "Invalid data", kDamage},
      {"truncated_in_header.jpg", "Possible damage", "Image Structure", "Unexpected end of file",
       kDamage},
      {"truncated.webp", "Possible damage", "Image Structure", "Unexpected end of file", kDamage},
      {"photo.jpg", "Possible damage", "Image Structure", "No readable image", kDamage},
      // We cannot decode a BMP: that limits the check, it is no sign of damage.
      {"unsupported.bmp", "Verification limited", "Image Structure", "Unknown type", kLimited},
      // The content decides: a PNG named notes.txt is decoded as the PNG it is.
      {"notes.txt", "Looks intact", "Image Structure", "Complete", kIntact},
      {"one_page.pdf", "Looks intact", "PDF Structure", "1 page readable", kIntact},
      {"three_pages.pdf", "Looks intact", "PDF Structure", "3 pages readable", kIntact},
      // An owner password alone leaves the document open: it is judged by its pages.
      {"encrypted_owner_password_only.pdf", "Looks intact", "PDF Structure", "1 page readable",
       kIntact},
      {"encrypted_user_password.pdf", "Verification limited", "PDF Structure", "Locked / encrypted",
       kLimited},
      {"zero_pages.pdf", "Possible damage", "PDF Structure", "No readable pages", kDamage},
      {"not_a_pdf.pdf", "Possible damage", "PDF Structure", "Could not open", kDamage},
      // A ZIP named report.pdf gets the ZIP test, which it passes.
      {"report.pdf", "Looks intact", "ZIP Structure", "Integrity test passed", kIntact},
      {"password_protected.zip", "Verification limited", "ZIP Structure",
       "Encrypted / password required", kLimited},
      {"truncated.zip", "Possible damage", "ZIP Structure", "Integrity test failed", kDamage},
      {"archive.zip", "Possible damage", "ZIP Structure", "Integrity test failed", kDamage},
      {"empty.jpg", "Empty file", "Structure", "No content", kLimited},
  };
  // One outcome, one detail; two outcomes never share one (but every intact file does).
  std::map<std::string, std::string> detailOf;
  std::set<std::string> details;
  for (const Expected& want : cases) {
    SCOPED_TRACE(want.file);
    const Accumulators accumulators = assess(kFixtures / want.file);
    expectVerdict(accumulators, want);
    const std::string outcome = want.verdict == "Looks intact" ? want.verdict : want.structureValue;
    const std::string& detail = accumulators.rawMetadata.at("File Health Detail");
    if (detailOf.emplace(outcome, detail).second) details.insert(detail);
    EXPECT_EQ(detailOf.at(outcome), detail);
  }
  EXPECT_EQ(details.size(), detailOf.size());
}

TEST(HealthAssessment, theCheckFollowsTheContentAndTheNameOnlyWhenTheContentIsUnknown) {
  TempDir dir;
  const auto zipBytes = test::fileBytes(kFixtures / "intact.zip");
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

TEST(HealthAssessment, aOneByteFileAndAFileThatShrankGetTheReadTest) {
  TempDir dir;
  expectVerdict(assess(dir.write("one", "x")),
                {"", "Looks intact", "Basic Read Test", "Passed", kIntact});
  const auto file = dir.write("notes.txt", std::string(4096, 'a'));
  const platform::OpenedItem item = test::openedItem(file);
  std::filesystem::resize_file(file, 100);
  Accumulators accumulators;
  assessFileHealth(item, test::sharedDecoder(), accumulators);
  expectVerdict(accumulators, {"", "Possible read problem", "Basic Read Test", "Failed", kDamage});
}

TEST(HealthAssessment, unreadableFileIsReportedBeforeAnyCheck) {
  if (test::runningAsRoot()) GTEST_SKIP() << "root reads every file";
  TempDir dir;
  const auto file = dir.write("locked.jpg", "secret");
  ASSERT_EQ(::chmod(file.c_str(), 0), 0);
  const Accumulators accumulators = assess(file);
  EXPECT_EQ(test::block(accumulators.sections, "File Health"),
            "Assessment: Unreadable\nReadable: No\nStructure: Could not verify\n");
  EXPECT_EQ(accumulators.findings.at(0).level, PrivacyLevel::sensitive);
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
  const auto bytes = [](const char* name) { return test::fileBytes(kFixtures / name); };
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
  EXPECT_EQ(result.status, "Could not test");
  EXPECT_TRUE(result.isLimited && !result.isProblem);

  const StructureCheckResult passed = testZipIntegrity(test::openedItem(kFixtures / "intact.zip"));
  EXPECT_EQ(passed.status, "Integrity test passed");
  EXPECT_FALSE(passed.isProblem || passed.isLimited);
}

}  // namespace
}  // namespace lumenscribe
