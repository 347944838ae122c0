// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/zip_inventory.h"

#include <gtest/gtest.h>

#include "test_files.h"

namespace lumenscribe {
namespace {

using test::rowsOf;

Accumulators inventory(const std::string& fixture, const InspectionControl& control = {},
                       const std::filesystem::path& unzip = "/usr/bin/unzip") {
  Accumulators accumulators;
  inventoryZipArchive(test::openedItem(test::kData / "containers" / fixture), accumulators, control,
                      unzip);
  return accumulators;
}

TEST(ZipInventory, listsEntriesWithoutExtractingAndPublishesThemAsAZipArchive) {
  const Accumulators accumulators = inventory("listing.zip");
  EXPECT_EQ(
      test::titlesOf(accumulators.sections),
      (std::vector<std::string>{"ZIP Archive Contents", "Contents Preview", "Safe Inspection"}));
  // myfiles/a.txt holds "files" and is skipped like the footer.
  EXPECT_EQ(test::lines(accumulators.sections, "ZIP Archive Contents"),
            (test::Lines{"Files: 9", "Folders: 1", "Contents Size: 52 bytes",
                         "Top Types: JPG × 3 · TXT × 2 · EXE × 1 · GZ × 1 · PDF × 1",
                         "Hidden Items: 3", "Executables: 1", "Nested Archives: 1"}));
  std::vector<std::string> preview;
  for (const auto& [label, value] : rowsOf(accumulators.sections, "Contents Preview")) {
    preview.push_back(value);
  }
  EXPECT_EQ(preview, (std::vector<std::string>{
                         "📁 docs/", "docs/readme.txt", "photos/.hidden.jpg", "__MACOSX/._photo.jpg",
                         "project/.git/config", "tools/setup.exe", "My Photo 1.jpg",
                         "  two leading blanks.txt", "archive.tar.gz", "Essex map.pdf"}));
  EXPECT_EQ(accumulators.rawMetadata.at("Container Images"), "3");
  EXPECT_EQ(accumulators.rawMetadata.at("Container Flagged Names"), "1");
  EXPECT_FALSE(accumulators.rawMetadata.contains("ZIP Inspection Error"));
  EXPECT_EQ(accumulators.findings.size(), 6u);

  // 1 GiB of zeros in a kilobyte and a half: listed by its recorded size, never unpacked.
  const Accumulators huge = inventory("zeros_1gib_bzip2.zip");
  EXPECT_EQ(huge.rawMetadata.at("Container Contents Bytes"), "1073741824");
  EXPECT_EQ(test::rowValue(huge.sections, "ZIP Archive Contents", "Contents Size"), "1.07 GB");

  const Accumulators empty = inventory("empty.zip");
  EXPECT_EQ(test::lines(empty.sections, "ZIP Archive Contents"),
            (test::Lines{"Files: 0", "Folders: 0", "Contents Size: Zero KB"}));
  EXPECT_EQ(rowsOf(empty.sections, "Safe Inspection").size(), 1u);
}

TEST(ZipInventory, aListingThatCannotBeReadLeavesOnlyTheErrorEntry) {
  // Not an archive, a central directory without signatures, a name that is not UTF-8.
  for (const char* fixture :
       {"not_an_archive.zip", "damaged_central_directory.zip", "latin1_name.zip"}) {
    SCOPED_TRACE(fixture);
    const Accumulators accumulators = inventory(fixture);
    EXPECT_TRUE(accumulators.sections.empty() && accumulators.findings.empty() &&
                accumulators.summaryItems.empty());
    EXPECT_EQ(accumulators.rawMetadata,
              (RawMetadata{{"ZIP Inspection Error", "The ZIP inventory could not be read."}}));
  }
  const Accumulators noTool = inventory("listing.zip", {}, "/nonexistent/unzip");
  EXPECT_TRUE(noTool.sections.empty());
  EXPECT_EQ(noTool.rawMetadata,
            (RawMetadata{{"ZIP Inspection Error",
                          "Could not start /nonexistent/unzip: No such file or directory"}}));
  // A requested stop kills the listing and adds nothing.
  std::stop_source stop;
  stop.request_stop();
  const Accumulators stopped = inventory("listing.zip", {stop.get_token(), {}});
  EXPECT_TRUE(stopped.sections.empty() && stopped.rawMetadata.empty());
}

}  // namespace
}  // namespace lumenscribe
