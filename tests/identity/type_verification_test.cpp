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

std::vector<std::pair<std::string, std::string>> rowsOf(const Accumulators& accumulators) {
  std::vector<std::pair<std::string, std::string>> rows;
  for (const auto& row : accumulators.sections.at(0).rows) rows.emplace_back(row.label, row.value);
  return rows;
}

// Inspected as the driver inspects it: the opened item's head bytes and desktop type.
Accumulators verify(const std::filesystem::path& file) {
  Accumulators accumulators;
  verifyFileType(test::openedItem(file), accumulators);
  return accumulators;
}

// The same file judged with a desktop type of the test's choosing.
void verifyWith(const std::filesystem::path& file, const std::optional<ContentType>& platformType,
                Accumulators& accumulators) {
  const platform::OpenedItem item = test::openedItem(file);
  verifyFileType(item.url(), item.head(), platformType, accumulators);
}

TEST(TypeVerification, renamedFileIsAMismatchWithEveryRowRawEntryAndWarning) {
  TempDir dir;
  const Accumulators renamed = verify(dir.write("report.pdf", fixture("intact.zip")));
  EXPECT_EQ(renamed.sections.at(0).title, "Type Verification");
  EXPECT_EQ(renamed.sections.at(0).systemImage, "exclamationmark.triangle.fill");
  EXPECT_EQ(rowsOf(renamed), (std::vector<std::pair<std::string, std::string>>{
                                 {"Filename Extension", ".pdf"},
                                 {"Extension Suggests", "PDF document"},
                                 {"macOS Type", "PDF document"},
                                 {"Content Signature", "ZIP archive"},
                                 {"Type Match", "Mismatch detected"}}));
  EXPECT_EQ(renamed.rawMetadata,
            (RawMetadata{{"Type Verification Extension", "pdf"},
                         {"Type Verification Expected Type", "application/pdf"},
                         {"Type Verification macOS Type", "application/pdf"},
                         {"Type Verification Signature", "ZIP archive"},
                         {"Type Verification Result", "Mismatch detected"}}));
  EXPECT_EQ(renamed.summaryItems, std::vector<std::string>{"Type Verification"});
  ASSERT_EQ(renamed.findings.size(), 1u);
  EXPECT_EQ(renamed.findings[0].title, "File type does not match its name");
  EXPECT_EQ(renamed.findings[0].level, PrivacyLevel::sensitive);

  const Accumulators honest = verify(dir.write("photo.JPG", fixture("intact.jpg")));
  EXPECT_EQ(honest.sections.at(0).systemImage, "checkmark.seal.fill");
  EXPECT_EQ(rowsOf(honest).front().second, ".jpg");
  EXPECT_EQ(honest.rawMetadata.at("Type Verification Extension"), "jpg");
  EXPECT_EQ(honest.rawMetadata.at("Type Verification Result"), "No obvious mismatch");
  EXPECT_TRUE(honest.findings.empty());

  // Lower-casing is not limited to ASCII letters.
  const Accumulators accented = verify(dir.write("map.\u00C9PS", "A note.\n"));
  EXPECT_EQ(rowsOf(accented).front().second, ".\u00E9ps");
  EXPECT_EQ(accented.rawMetadata.at("Type Verification Extension"), "\u00E9ps");
}

TEST(TypeVerification, onlyAContentCategoryTheClaimedTypeLacksIsAMismatch) {
  TempDir dir;
  struct Case {
    const char* name;
    std::string content;
    const char* signature;  // raw "Type Verification Signature"
    const char* expected;   // raw "Type Verification Expected Type"
    bool mismatch;
  };
  const Case cases[] = {
      {"picture.jpg", fixture("intact.png"), "PNG image", "image/jpeg", false},  // both images
      {"notes.txt", fixture("intact.png"), "PNG image", "text/plain", true},
      {"archive.zip", "Just words, not an archive.\n", "Plain text", "application/zip", true},
      {"photo.jpg", "A note, not a photograph.\n", "Plain text", "image/jpeg", true},
      // Prose that fails the printable ratio has no signature, so it raises nothing.
      {"prose.txt", std::string(40, 'x') + std::string(10, '\xC3'), "Unknown", "text/plain", false},
      // An extension the database does not know claims nothing.
      {"data.qqqzz", fixture("intact.png"), "PNG image", "Unknown", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Accumulators result = verify(dir.write(c.name, c.content));
    EXPECT_EQ(result.rawMetadata.at("Type Verification Signature"), c.signature);
    EXPECT_EQ(result.rawMetadata.at("Type Verification Expected Type"), c.expected);
    EXPECT_EQ(result.rawMetadata.at("Type Verification Result"),
              c.mismatch ? "Mismatch detected" : "No obvious mismatch");
    EXPECT_EQ(result.findings.size(), c.mismatch ? 1u : 0u);
    const auto rows = rowsOf(result);
    const bool suggests = std::any_of(rows.begin(), rows.end(), [](const auto& row) {
      return row.first == "Extension Suggests";
    });
    EXPECT_EQ(suggests, std::string(c.expected) != "Unknown");
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
    verifyWith(c.file, c.platformType, accumulators);
    EXPECT_EQ(accumulators.rawMetadata["Type Verification Result"],
              c.mismatch ? "Mismatch detected" : "No obvious mismatch");
    EXPECT_EQ(accumulators.rawMetadata["Type Verification macOS Type"],
              c.platformType ? c.platformType->identifier() : "Unknown");
    const auto rows = rowsOf(accumulators);
    const bool hasPlatformRow = std::any_of(
        rows.begin(), rows.end(), [](const auto& row) { return row.first == "macOS Type"; });
    EXPECT_EQ(hasPlatformRow, c.platformType.has_value());
  }
}

TEST(TypeVerification, nameWithoutExtensionGetsANoteOnlyForAKnownFormat) {
  TempDir dir;
  Accumulators readme;
  verifyWith(dir.write("README", "Build with cmake.\n"), std::nullopt, readme);
  EXPECT_EQ(rowsOf(readme).front().second, "None");
  EXPECT_EQ(readme.rawMetadata["Type Verification Extension"], "");
  EXPECT_EQ(readme.rawMetadata["Type Verification Expected Type"], "Unknown");
  ASSERT_EQ(readme.findings.size(), 1u);
  EXPECT_EQ(readme.findings[0].title, "File has no extension");
  EXPECT_EQ(readme.findings[0].detail,
            "The filename does not claim a type, but Lumenscribe identified its contents as Plain "
            "text.");
  EXPECT_EQ(readme.findings[0].level, PrivacyLevel::neutral);

  Accumulators unknown;
  verifyWith(dir.write("blob", std::string(32, '\x01')), std::nullopt, unknown);
  EXPECT_TRUE(unknown.findings.empty());
  EXPECT_EQ(unknown.rawMetadata["Type Verification Signature"], "Unknown");
  EXPECT_EQ(rowsOf(unknown).at(1).second, "No known signature detected");
}

}  // namespace
}  // namespace lumenscribe
