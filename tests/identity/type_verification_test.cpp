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
using Rows = std::vector<std::pair<std::string, std::string>>;

std::string fixture(const std::string& name) {
  std::ifstream in(std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health" / name,
                   std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// The file judged from its head bytes, with a desktop type of the test's choosing.
Accumulators verify(const std::filesystem::path& file,
                    const std::optional<ContentType>& platformType) {
  Accumulators accumulators;
  const platform::OpenedItem item = test::openedItem(file);
  verifyFileType(item.url(), item.head(), platformType, accumulators);
  return accumulators;
}

TEST(TypeVerification, aRenamedFileGetsEveryRowRawEntryAndTheWarning) {
  TempDir dir;
  Accumulators renamed;
  verifyFileType(test::openedItem(dir.write("report.PDF", fixture("intact.zip"))), renamed);
  Rows rows;
  for (const auto& row : renamed.sections.at(0).rows) rows.emplace_back(row.label, row.value);
  EXPECT_EQ(rows, (Rows{{"Filename Extension", ".pdf"},
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
  // Lower-casing is not limited to ASCII letters.
  EXPECT_EQ(verify(dir.write("map.\u00C9PS", "A note.\n"), std::nullopt)
                .rawMetadata.at("Type Verification Extension"),
            "\u00E9ps");
}

// Only a content category that the claimed type lacks is a mismatch, and the desktop's own
// type can clear a suspicion but never raise one.
TEST(TypeVerification, judgesTheClaimAgainstTheContentCategory) {
  TempDir dir;
  const auto zipType = platform::contentTypeForName("application/zip");
  const auto pdfType = platform::contentTypeForName("application/pdf");
  ASSERT_TRUE(zipType && pdfType);
  const auto zipAsText = dir.write("bundle.txt", fixture("intact.zip"));
  struct Case {
    std::filesystem::path file;
    std::optional<ContentType> platformType;
    const char* expected;  // raw "Type Verification Expected Type"
    const char* result;
    const char* finding;  // nullptr: none
  };
  const Case cases[] = {
      {dir.write("picture.jpg", fixture("intact.png")),
       {},
       "image/jpeg",
       "No obvious mismatch",
       nullptr},  // both are images
      {dir.write("notes.txt", fixture("intact.png")),
       {},
       "text/plain",
       "Mismatch detected",
       "File type does not match its name"},
      {dir.write("archive.zip", "Just words.\n"),
       {},
       "application/zip",
       "Mismatch detected",
       "File type does not match its name"},
      // Prose that fails the printable ratio has no signature, so it raises nothing.
      {dir.write("prose.txt", std::string(40, 'x') + std::string(10, '\xC3')),
       {},
       "text/plain",
       "No obvious mismatch",
       nullptr},
      // An extension the database does not know claims nothing.
      {dir.write("data.qqqzz", fixture("intact.png")),
       {},
       "Unknown",
       "No obvious mismatch",
       nullptr},
      {zipAsText, zipType, "text/plain", "No obvious mismatch", nullptr},  // vouched for
      {zipAsText, pdfType, "text/plain", "Mismatch detected", "File type does not match its name"},
      // No extension: no claim, whatever the platform type; a known format gets a note.
      {dir.write("bundle", fixture("intact.zip")), pdfType, "Unknown", "No obvious mismatch",
       "File has no extension"},
      {dir.write("blob", std::string(32, '\x01')), {}, "Unknown", "No obvious mismatch", nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file.filename().string() + " as " +
                 (c.platformType ? c.platformType->identifier() : "nothing"));
    const Accumulators accumulators = verify(c.file, c.platformType);
    const RawMetadata& raw = accumulators.rawMetadata;
    EXPECT_EQ(raw.at("Type Verification Expected Type"), c.expected);
    EXPECT_EQ(raw.at("Type Verification Result"), c.result);
    EXPECT_EQ(raw.at("Type Verification macOS Type"),
              c.platformType ? c.platformType->identifier() : "Unknown");
    ASSERT_EQ(accumulators.findings.size(), c.finding ? 1u : 0u);
    if (c.finding) {
      EXPECT_EQ(accumulators.findings[0].title, c.finding);
    }
    // A row says only what is known.
    std::vector<std::string> labels;
    for (const auto& row : accumulators.sections.at(0).rows) labels.push_back(row.label);
    EXPECT_EQ(std::count(labels.begin(), labels.end(), "Extension Suggests"),
              std::string(c.expected) != "Unknown");
    EXPECT_EQ(std::count(labels.begin(), labels.end(), "macOS Type"), c.platformType.has_value());
  }
  const Accumulators bundle = verify(dir.path() / "bundle", std::nullopt);
  EXPECT_EQ(bundle.findings.at(0).detail,
            "The filename does not claim a type, but Lumenscribe identified its contents as ZIP "
            "archive.");
  EXPECT_EQ(verify(dir.path() / "blob", std::nullopt).sections.at(0).rows.at(1).value,
            "No known signature detected");
}

}  // namespace
}  // namespace lumenscribe
