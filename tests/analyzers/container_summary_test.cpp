// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/container_summary.h"

#include <gtest/gtest.h>

#include "test_files.h"

namespace lumenscribe {
namespace {

using test::Rows;
using test::rowsOf;
using test::titlesOf;

TEST(ContainerSummary, classifiesEachFileByItsExtensionAndName) {
  struct Case {
    std::string name;
    std::string extension;
    // image, video, audio, document, double extension, flagged name
    std::array<std::int64_t, 6> counts;
  };
  const Case cases[] = {
      {"IMG_0042.JPG", "jpg", {1, 0, 0, 0, 0, 0}},
      {"clip.webm", "webm", {0, 1, 0, 0, 0, 0}},
      {"song.flac", "flac", {0, 0, 1, 0, 0, 0}},
      {"notes.md", "md", {0, 0, 0, 1, 0, 0}},
      {"model.stl", "stl", {0, 0, 0, 0, 0, 0}},
      // Double extensions: an executable last or inner piece, or an archive last.
      {"invoice.pdf.exe", "exe", {0, 0, 0, 0, 1, 0}},
      {"run.sh.txt", "txt", {0, 0, 0, 1, 1, 0}},
      {"photos.tar.gz", "gz", {0, 0, 0, 0, 1, 0}},
      {"report.final.pdf", "pdf", {0, 0, 0, 1, 0, 0}},
      {"..run..SH", "sh", {0, 0, 0, 0, 0, 0}},  // empty pieces dropped: two pieces
      {"a..b..SH", "sh", {0, 0, 0, 0, 1, 0}},
      {"backup.ZIP.txt", "txt", {0, 0, 0, 1, 0, 0}},  // an archive counts only last
      // A Kelvin sign lower-cases to "k": "PKG" written with it is still an archive.
      {"setup.tar.P\u212AG", "p\u212Ag", {0, 0, 0, 0, 1, 0}},
      // Explicit terms are substrings of the lower-cased name, counted once per file.
      {"Essex map.pdf", "pdf", {0, 0, 0, 1, 0, 1}},
      {"XXX-porno-SEXY.png", "png", {1, 0, 0, 0, 0, 1}},
      {"adulting tips.txt", "txt", {0, 0, 0, 1, 0, 1}},
      {"nud e.txt", "txt", {0, 0, 0, 1, 0, 0}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    ContainerSummary summary;
    classifyContainerFile(c.name, c.extension, summary);
    const std::array<std::int64_t, 6> counts = {
        summary.imageCount,    summary.videoCount,           summary.audioCount,
        summary.documentCount, summary.doubleExtensionCount, summary.suspiciousNameCount};
    EXPECT_EQ(counts, c.counts);
    EXPECT_EQ(summary.fileCount, 0);  // counting files is the inventories' part
  }
}

TEST(ContainerSummary, takesTheExtensionOfTheLastPathComponent) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"photo.JPG", "JPG"}, {"docs/readme.txt", "txt"},    {"a.b/c", ""},
      {".profile", ""},     {"photos/.hidden.jpg", "jpg"}, {"archive.tar.gz", "gz"},
      {"trailing.", ""},    {"no extension", ""},          {"..x", "x"}};
  for (const auto& [path, extension] : cases) {
    EXPECT_EQ(containerExtension(path), extension) << path;
  }
}

TEST(ContainerSummary, anEmptyContainerHasOnlyCountsOfZeroAndTheInitialCheck) {
  Accumulators accumulators;
  publishContainerSummary(ContainerSummary{}, "Folder", accumulators);
  EXPECT_EQ(titlesOf(accumulators.sections),
            (std::vector<std::string>{"Folder Contents", "Safe Inspection"}));
  EXPECT_EQ(accumulators.sections[0].systemImage, "folder.badge.gearshape");
  EXPECT_EQ(test::block(accumulators.sections, "Folder Contents"),
            "Files: 0\nFolders: 0\nContents Size: Zero KB\n");
  EXPECT_EQ(rowsOf(accumulators.sections, "Safe Inspection").at(0).first, "Initial Check");
  EXPECT_TRUE(accumulators.findings.empty());
  EXPECT_EQ(accumulators.summaryItems,
            (std::vector<std::string>{"Safe Inspection", "Folder Contents"}));
  // Every count has its raw entry, zero or not.
  EXPECT_EQ(accumulators.rawMetadata.size(), 12u);
  for (const auto& [key, value] : accumulators.rawMetadata) EXPECT_EQ(value, "0") << key;
}

TEST(ContainerSummary, publishesEveryCountRowPreviewFindingAndRawEntryInOrder) {
  ContainerSummary summary;
  summary.fileCount = 31;
  summary.folderCount = 2;
  summary.totalBytes = 1'500'000;
  summary.hiddenCount = 1;
  summary.executableCount = 2;
  summary.nestedArchiveCount = 3;
  summary.imageCount = 4;
  summary.videoCount = 5;
  summary.audioCount = 6;
  summary.documentCount = 7;
  summary.doubleExtensionCount = 8;
  summary.suspiciousNameCount = 9;
  // Ten extensions: ties go by extension, and only eight are shown.
  summary.extensionCounts = {{"png", 2}, {"jpg", 2}, {"mov", 5}, {"a", 1}, {"b", 1},
                             {"c", 1},   {"d", 1},   {"e", 1},   {"f", 1}, {"g", 1}};
  for (int i = 1; i <= 25; ++i) summary.addSample("file " + std::to_string(i));
  ASSERT_EQ(summary.sampleItems.size(), 20u);

  Accumulators accumulators;
  publishContainerSummary(summary, "ZIP Archive", accumulators);
  EXPECT_EQ(
      titlesOf(accumulators.sections),
      (std::vector<std::string>{"ZIP Archive Contents", "Contents Preview", "Safe Inspection"}));
  EXPECT_EQ(accumulators.sections[0].systemImage, "archivebox.fill");
  EXPECT_EQ(test::block(accumulators.sections, "ZIP Archive Contents"),
            "Files: 31\nFolders: 2\nContents Size: 1.5 MB\n"
            "Top Types: MOV × 5 · JPG × 2 · PNG × 2 · A × 1 · B × 1 · C × 1 · D × 1 · E × 1\n"
            "Hidden Items: 1\nExecutables: 2\nNested Archives: 3\n");
  const test::Lines preview = test::lines(accumulators.sections, "Contents Preview");
  ASSERT_EQ(preview.size(), 20u);
  EXPECT_EQ(preview.front() + " … " + preview.back(), "01: file 1 … 20: file 20");
  EXPECT_EQ(test::block(accumulators.sections, "Safe Inspection"),
            "Images: 4\nVideos: 5\nAudio: 6\nDocuments: 7\nDouble Extensions: 8\n"
            "Flagged Names: 9\nExecutable Content: 2\nNested Archives: 3\nHidden Items: 1\n");
  EXPECT_EQ(
      titlesOf(accumulators.findings),
      (std::vector<std::string>{"Visual media is present", "Double-extension filenames found",
                                "Potentially sensitive filenames found", "Hidden items are present",
                                "Executable content is present", "Nested archives are present"}));
  std::vector<PrivacyLevel> levels;
  for (const auto& finding : accumulators.findings) levels.push_back(finding.level);
  using enum PrivacyLevel;
  EXPECT_EQ(levels, (std::vector{neutral, sensitive, sensitive, notice, sensitive, notice}));
  // The counts are in the words.
  EXPECT_NE(accumulators.findings[0].detail.find("4 image"), std::string::npos);
  EXPECT_NE(accumulators.findings[0].detail.find("5 video"), std::string::npos);

  EXPECT_EQ(accumulators.rawMetadata.at("Container Contents Bytes"), "1500000");
  EXPECT_EQ(accumulators.rawMetadata.at("Container Flagged Names"), "9");
  EXPECT_EQ(accumulators.rawMetadata.at("Container Type .mov"), "5");
  EXPECT_EQ(accumulators.rawMetadata.at("Container Type .g"), "1");  // every type, not 8
  EXPECT_EQ(accumulators.rawMetadata.size(), 12u + 10u);
}

TEST(ContainerSummary, aSizeSumStopsAtTheLargestCountInsteadOfWrappingAround) {
  ContainerSummary summary;
  summary.addBytes(std::numeric_limits<std::int64_t>::max() - 1);
  summary.addBytes(5);
  EXPECT_EQ(summary.totalBytes, std::numeric_limits<std::int64_t>::max());
}

}  // namespace
}  // namespace lumenscribe
