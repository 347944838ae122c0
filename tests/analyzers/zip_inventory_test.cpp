// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/zip_inventory.h"

#include <gtest/gtest.h>

#include "analyzers/container_test_support.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

using test::Rows;
using test::rowsOf;
using test::rowValue;

const std::filesystem::path kFixtures =
    std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "containers";

Accumulators inventory(const std::string& fixture, const InspectionControl& control = {},
                       const std::filesystem::path& unzip = "/usr/bin/unzip") {
  Accumulators accumulators;
  inventoryZipArchive(test::openedItem(kFixtures / fixture), accumulators, control, unzip);
  return accumulators;
}

TEST(ZipInventory, listsEntriesWithoutExtractingAndPublishesThemAsAZipArchive) {
  const Accumulators accumulators = inventory("listing.zip");
  EXPECT_EQ(
      test::sectionTitles(accumulators),
      (std::vector<std::string>{"ZIP Archive Contents", "Contents Preview", "Safe Inspection"}));
  EXPECT_EQ(accumulators.sections[0].systemImage, "archivebox.fill");
  // myfiles/a.txt holds "files" and is skipped like the footer.
  EXPECT_EQ(rowsOf(accumulators, "ZIP Archive Contents"),
            (Rows{{"Files", "9"},
                  {"Folders", "1"},
                  {"Contents Size", "52 bytes"},
                  {"Top Types", "JPG × 3 · TXT × 2 · EXE × 1 · GZ × 1 · PDF × 1"},
                  {"Hidden Items", "3"},
                  {"Executables", "1"},
                  {"Nested Archives", "1"}}));
  std::vector<std::string> preview;
  for (const auto& [label, value] : rowsOf(accumulators, "Contents Preview")) {
    preview.push_back(value);
  }
  EXPECT_EQ(preview, (std::vector<std::string>{
                         "📁 docs/", "docs/readme.txt", "photos/.hidden.jpg", "__MACOSX/._photo.jpg",
                         "project/.git/config", "tools/setup.exe", "My Photo 1.jpg",
                         "  two leading blanks.txt", "archive.tar.gz", "Essex map.pdf"}));
  // Publishing the counts is ContainerSummary's part; these are what the listing gave it.
  EXPECT_EQ(accumulators.rawMetadata.at("Container Images"), "3");
  EXPECT_EQ(accumulators.rawMetadata.at("Container Flagged Names"), "1");
  EXPECT_EQ(accumulators.rawMetadata.at("Container Type .jpg"), "3");
  EXPECT_FALSE(accumulators.rawMetadata.contains("ZIP Inspection Error"));
  EXPECT_EQ(test::findingTitles(accumulators).size(), 6u);
}

TEST(ZipInventory, aHugeEntryIsListedByItsRecordedSizeWithoutBeingUnpacked) {
  // 1 GiB of zeros in a kilobyte and a half.
  const Accumulators accumulators = inventory("zeros_1gib_bzip2.zip");
  EXPECT_EQ(accumulators.rawMetadata.at("Container Contents Bytes"), "1073741824");
  EXPECT_EQ(rowValue(accumulators, "ZIP Archive Contents", "Contents Size"), "1.07 GB");
}

TEST(ZipInventory, anEmptyArchiveIsAnEmptyInventory) {
  const Accumulators accumulators = inventory("empty.zip");
  EXPECT_EQ(rowsOf(accumulators, "ZIP Archive Contents"),
            (Rows{{"Files", "0"}, {"Folders", "0"}, {"Contents Size", "Zero KB"}}));
  const Rows safety = rowsOf(accumulators, "Safe Inspection");
  ASSERT_EQ(safety.size(), 1u);
  EXPECT_EQ(safety.front().first, "Initial Check");
  EXPECT_FALSE(accumulators.rawMetadata.contains("ZIP Inspection Error"));
}

TEST(ZipInventory, aListingThatCannotBeReadLeavesOnlyTheErrorEntry) {
  // Not an archive, a central directory without signatures, a name that is not UTF-8.
  for (const char* fixture :
       {"not_an_archive.zip", "damaged_central_directory.zip", "latin1_name.zip"}) {
    SCOPED_TRACE(fixture);
    const Accumulators accumulators = inventory(fixture);
    EXPECT_TRUE(accumulators.sections.empty());
    EXPECT_TRUE(accumulators.findings.empty());
    EXPECT_TRUE(accumulators.summaryItems.empty());
    EXPECT_EQ(accumulators.rawMetadata,
              (RawMetadata{{"ZIP Inspection Error", "The ZIP inventory could not be read."}}));
  }
}

TEST(ZipInventory, aToolThatCannotStartIsReportedWithTheReason) {
  const Accumulators accumulators = inventory("listing.zip", {}, "/nonexistent/unzip");
  EXPECT_TRUE(accumulators.sections.empty());
  EXPECT_EQ(accumulators.rawMetadata,
            (RawMetadata{{"ZIP Inspection Error",
                          "Could not start /nonexistent/unzip: No such file or directory"}}));
}

TEST(ZipInventory, aRequestedStopKillsTheListingAndAddsNothing) {
  std::stop_source stop;
  stop.request_stop();
  const Accumulators accumulators = inventory("listing.zip", {stop.get_token(), {}});
  EXPECT_TRUE(accumulators.sections.empty());
  EXPECT_TRUE(accumulators.rawMetadata.empty());
}

}  // namespace
}  // namespace lumenscribe
