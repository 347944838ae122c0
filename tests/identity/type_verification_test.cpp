// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/type_verification.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "platform/mime_database.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

using test::TempDir;

std::string fixture(const std::string& name) {
  std::ifstream in(std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health" / name,
                   std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<std::pair<std::string, std::string>> rowsOf(const InsightSection& section) {
  std::vector<std::pair<std::string, std::string>> rows;
  for (const auto& row : section.rows) rows.emplace_back(row.label, row.value);
  return rows;
}

// Each file is inspected with the platform type the driver would pass: the desktop's type
// for the file, which follows its name.
TEST(TypeVerification, comparesNameTypeAndContent) {
  TempDir dir;
  struct Case {
    std::string name;
    std::string content;
    std::vector<std::pair<std::string, std::string>> rows;
    std::string rawExtension, rawExpected, rawPlatform, rawSignature;
    bool mismatch;
  };
  const Case cases[] = {
      {"photo.JPG",
       fixture("intact.jpg"),
       {{"Filename Extension", ".jpg"},
        {"Extension Suggests", "JPEG image"},
        {"macOS Type", "JPEG image"},
        {"Content Signature", "JPEG image"},
        {"Type Match", "No obvious mismatch"}},
       "jpg",
       "image/jpeg",
       "image/jpeg",
       "JPEG image",
       false},
      // Both are images: a PNG behind a jpg name is no mismatch.
      {"picture.jpg",
       fixture("intact.png"),
       {{"Filename Extension", ".jpg"},
        {"Extension Suggests", "JPEG image"},
        {"macOS Type", "JPEG image"},
        {"Content Signature", "PNG image"},
        {"Type Match", "No obvious mismatch"}},
       "jpg",
       "image/jpeg",
       "image/jpeg",
       "PNG image",
       false},
      {"report.pdf",
       fixture("intact.zip"),
       {{"Filename Extension", ".pdf"},
        {"Extension Suggests", "PDF document"},
        {"macOS Type", "PDF document"},
        {"Content Signature", "ZIP archive"},
        {"Type Match", "Mismatch detected"}},
       "pdf",
       "application/pdf",
       "application/pdf",
       "ZIP archive",
       true},
      {"notes.txt",
       fixture("intact.png"),
       {{"Filename Extension", ".txt"},
        {"Extension Suggests", "plain text document"},
        {"macOS Type", "plain text document"},
        {"Content Signature", "PNG image"},
        {"Type Match", "Mismatch detected"}},
       "txt",
       "text/plain",
       "text/plain",
       "PNG image",
       true},
      {"archive.zip",
       "Just words in a file that claims to be an archive.\n",
       {{"Filename Extension", ".zip"},
        {"Extension Suggests", "Zip archive"},
        {"macOS Type", "Zip archive"},
        {"Content Signature", "Plain text"},
        {"Type Match", "Mismatch detected"}},
       "zip",
       "application/zip",
       "application/zip",
       "Plain text",
       true},
      // UTF-8 prose that fails the printable ratio has no signature, so no mismatch.
      {"notes2.txt",
       std::string(40, 'x') + std::string(10, '\xC3'),
       {{"Filename Extension", ".txt"},
        {"Extension Suggests", "plain text document"},
        {"macOS Type", "plain text document"},
        {"Content Signature", "No known signature detected"},
        {"Type Match", "No obvious mismatch"}},
       "txt",
       "text/plain",
       "text/plain",
       "Unknown",
       false},
      // An extension the database does not know claims nothing.
      {"data.qqqzz",
       fixture("intact.png"),
       {{"Filename Extension", ".qqqzz"},
        {"macOS Type", "PNG image"},
        {"Content Signature", "PNG image"},
        {"Type Match", "No obvious mismatch"}},
       "qqqzz",
       "Unknown",
       "image/png",
       "PNG image",
       false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const auto file = dir.write(c.name, c.content);
    Accumulators accumulators;
    verifyFileType(file, platform::contentTypeForFile(file), accumulators);

    ASSERT_EQ(accumulators.sections.size(), 1u);
    const InsightSection& section = accumulators.sections[0];
    EXPECT_EQ(section.title, "Type Verification");
    EXPECT_EQ(section.systemImage,
              c.mismatch ? "exclamationmark.triangle.fill" : "checkmark.seal.fill");
    EXPECT_EQ(rowsOf(section), c.rows);
    EXPECT_EQ(accumulators.summaryItems, std::vector<std::string>{"Type Verification"});
    const RawMetadata raw = {
        {"Type Verification Extension", c.rawExtension},
        {"Type Verification Expected Type", c.rawExpected},
        {"Type Verification macOS Type", c.rawPlatform},
        {"Type Verification Signature", c.rawSignature},
        {"Type Verification Result", c.mismatch ? "Mismatch detected" : "No obvious mismatch"}};
    EXPECT_EQ(accumulators.rawMetadata, raw);
    if (c.mismatch) {
      ASSERT_EQ(accumulators.findings.size(), 1u);
      EXPECT_EQ(accumulators.findings[0].title, "File type does not match its name");
      EXPECT_EQ(accumulators.findings[0].detail,
                "The filename extension suggests one kind of file, but Lumenscribe detected "
                "content consistent with another type. Treat the file cautiously until you know "
                "why it was renamed or mislabeled.");
      EXPECT_EQ(accumulators.findings[0].level, PrivacyLevel::sensitive);
    } else {
      EXPECT_TRUE(accumulators.findings.empty());
    }
  }
}

TEST(TypeVerification, platformTypeCanClearASuspicionButNeverRaiseOne) {
  TempDir dir;
  const auto zipAsText = dir.write("bundle.txt", fixture("intact.zip"));
  const auto zipType = platform::contentTypeForName("application/zip");
  const auto pdfType = platform::contentTypeForName("application/pdf");
  ASSERT_TRUE(zipType && pdfType);
  struct Case {
    std::filesystem::path file;
    std::optional<ContentType> platformType;
    bool mismatch;
  };
  const Case cases[] = {
      {zipAsText, zipType, false},      // the platform vouches for the archive
      {zipAsText, std::nullopt, true},  // nothing vouches for it
      {zipAsText, pdfType, true},       // the platform's type contradicts the content too
      // No extension: no claim, whatever the platform type.
      {dir.write("bundle", fixture("intact.zip")), pdfType, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file.filename().string() + " as " +
                 (c.platformType ? c.platformType->identifier() : "nothing"));
    Accumulators accumulators;
    verifyFileType(c.file, c.platformType, accumulators);
    EXPECT_EQ(accumulators.rawMetadata["Type Verification Result"],
              c.mismatch ? "Mismatch detected" : "No obvious mismatch");
    EXPECT_EQ(accumulators.rawMetadata["Type Verification macOS Type"],
              c.platformType ? c.platformType->identifier() : "Unknown");
    const bool hasPlatformRow = std::any_of(
        accumulators.sections.at(0).rows.begin(), accumulators.sections.at(0).rows.end(),
        [](const InsightRow& row) { return row.label == "macOS Type"; });
    EXPECT_EQ(hasPlatformRow, c.platformType.has_value());
  }
}

TEST(TypeVerification, nameWithoutExtensionGetsANoteOnlyForAKnownFormat) {
  TempDir dir;
  Accumulators readme;
  verifyFileType(dir.write("README", "Build with cmake.\n"), std::nullopt, readme);
  EXPECT_EQ(readme.sections.at(0).rows.front().value, "None");
  EXPECT_EQ(readme.rawMetadata["Type Verification Extension"], "");
  EXPECT_EQ(readme.rawMetadata["Type Verification Expected Type"], "Unknown");
  ASSERT_EQ(readme.findings.size(), 1u);
  EXPECT_EQ(readme.findings[0].title, "File has no extension");
  EXPECT_EQ(readme.findings[0].detail,
            "The filename does not claim a type, but Lumenscribe identified its contents as Plain "
            "text.");
  EXPECT_EQ(readme.findings[0].level, PrivacyLevel::neutral);

  Accumulators unknown;
  verifyFileType(dir.write("blob", std::string(32, '\x01')), std::nullopt, unknown);
  EXPECT_TRUE(unknown.findings.empty());
  EXPECT_EQ(unknown.rawMetadata["Type Verification Signature"], "Unknown");
  EXPECT_EQ(unknown.sections.at(0).rows.at(1).value, "No known signature detected");
}

}  // namespace
}  // namespace lumenscribe
