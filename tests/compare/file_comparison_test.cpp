// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "compare/file_comparison.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <nlohmann/json.hpp>

#include "compare/comparison_text.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

const std::filesystem::path kData = LUMENSCRIBE_TEST_DATA_DIR;

FileComparison compared(const std::filesystem::path& first, const std::filesystem::path& second) {
  auto outcome = compareFiles(first, second, test::sharedDecoder());
  if (const auto* failure = std::get_if<ComparisonFailure>(&outcome)) {
    ADD_FAILURE() << comparisonFailureMessage(*failure);
    return {};
  }
  return std::get<FileComparison>(std::move(outcome));
}

std::string numbered(int count, const char* changed) {
  std::string text;
  for (int i = 1; i <= count; ++i)
    text += (i % 2 == 0 ? changed : "line ") + std::to_string(i) + "\n";
  return text;
}

TEST(FileComparison, saysWhatTwoFilesShareByteLineAndPixel) {
  test::TempDir dir;
  const auto lf = dir.write("lf.txt", "one\ntwo\nthree");
  const auto crlf = dir.write("crlf.txt", "one\r\ntwo\r\nthree");
  // The same words in UTF-16 LE with its byte-order mark.
  const auto utf16 =
      dir.write("utf16.txt", std::string("\xFF\xFEo\0n\0e\0\n\0t\0w\0o\0\n\0t\0h\0r\0e\0e\0", 28));
  const auto five = dir.write("five.md", "one\ntwo\nthree\n\nfive");
  const auto corrupt = dir.write("corrupt.png", "\x89PNG\r\n\x1a\nnot a picture at all");
  const auto pixels = kData / "image" / "pixels_only.png";      // 96 × 64
  const auto withExif = kData / "image" / "png_with_exif.png";  // the same pixels, tagged
  const auto larger = kData / "health" / "intact.png";          // 128 × 96
  const struct {
    std::filesystem::path first, second;
    bool identical;
    std::optional<std::int64_t> changedLines;
    std::optional<bool> pixelMatch;
    std::optional<std::string> dimensions;
  } cases[] = {
      {lf, lf, true, 0, {}, {}},
      {pixels, pixels, true, {}, true, "96×64"},
      {lf, utf16, false, 0, {}, {}},
      // Each CR LF leaves an empty piece: every position after the first differs.
      {crlf, lf, false, 4, {}, {}},
      // Three lines against five: positions 4 and 5 have no first line.
      {lf, five, false, 2, {}, {}},
      {pixels, withExif, false, {}, true, "96×64"},
      {pixels, larger, false, {}, false, "96×64 vs 128×96"},
      {pixels, lf, false, {}, {}, {}},
      {corrupt, pixels, false, {}, {}, {}},
      {kData / "health" / "truncated_in_header.jpg",
       kData / "health" / "intact.jpg",
       false,
       {},
       {},
       {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.first.filename().string() + " vs " + c.second.filename().string());
    const FileComparison comparison = compared(c.first, c.second);
    EXPECT_EQ(comparison.identical(), c.identical);
    EXPECT_EQ(comparison.firstHash.size(), 64u);
    EXPECT_EQ(comparison.totalChangedLines, c.changedLines);
    EXPECT_EQ(comparison.textDifferences.has_value(), c.changedLines.has_value());
    EXPECT_EQ(comparison.pixelMatch, c.pixelMatch);
    EXPECT_EQ(comparison.pixelDimensions, c.dimensions);
  }

  const auto crlfLines = *compared(crlf, lf).textDifferences;
  EXPECT_EQ(crlfLines[0].lineNumber, 2);
  EXPECT_EQ(crlfLines[0].first, "");
  EXPECT_EQ(crlfLines[0].second, "two");
  const auto fiveLines = *compared(lf, five).textDifferences;
  ASSERT_EQ(fiveLines.size(), 2u);
  EXPECT_EQ(fiveLines[0].lineNumber, 4);
  EXPECT_EQ(fiveLines[0].first, std::nullopt);
  EXPECT_EQ(fiveLines[0].second, "");
}

TEST(FileComparison, keepsTwelveDifferencesAndCountsThemAll) {
  const LineDifferences lines = compareLines(numbered(40, "LINE "), numbered(40, "line "));
  EXPECT_EQ(lines.totalChangedLines, 20);
  ASSERT_EQ(lines.differences.size(), kMaxStoredDifferences);
  EXPECT_EQ(lines.differences.front().lineNumber, 2);
  EXPECT_EQ(lines.differences.back().lineNumber, 24);
  EXPECT_EQ(lines.differences.back().first, "LINE 24");
  // U+2028 and U+0085 separate lines as a line feed does.
  EXPECT_EQ(compareLines("a\u2028b\u0085c", "a\nb\nc").totalChangedLines, 0);
}

TEST(FileComparison, failsAtOnceForWhatIsNotAReadableFile) {
  test::TempDir dir;
  const auto text = dir.write("notes.txt", "words");
  const auto fifo = dir.path() / "pipe";
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  const struct {
    std::filesystem::path first, second;
    std::string message;
  } cases[] = {
      {text, fifo, "pipe: Not a regular file"},  // never opened: an open would wait for a writer
      {fifo, text, "pipe: Not a regular file"},
      {text, dir.path(), dir.path().filename().string() + ": Is a directory"},
      {dir.path() / "gone.txt", text, "gone.txt: No such file or directory"},
  };
  for (const auto& c : cases) {
    auto outcome = compareFiles(c.first, c.second, test::sharedDecoder());
    const auto* failure = std::get_if<ComparisonFailure>(&outcome);
    ASSERT_NE(failure, nullptr) << c.message;
    EXPECT_EQ(comparisonFailureMessage(*failure),
              "Lumenscribe could not compare these files: " + c.message);
  }
}

TEST(ComparisonSheet, printsTheSheetsTextsInItsOrderAndTheRecordAsJson) {
  FileComparison comparison;
  comparison.firstURL = "/a/first.txt";
  comparison.secondURL = "/b/second.txt";
  comparison.firstSize = 10;
  comparison.secondSize = 12;
  comparison.firstType = comparison.secondType = "plain text document";
  comparison.firstHash = std::string(64, 'a');
  comparison.secondHash = std::string(64, 'b');
  comparison.textDifferences = {{3, "", "x"}, {4, "y", std::nullopt}};
  comparison.totalChangedLines = 5;
  EXPECT_EQ(comparisonReport(comparison),
            "Files Are Different\n"
            "Lumenscribe found a difference between these files.\n\n"
            "First                first.txt\n"
            "Second               second.txt\n\n"
            "Size                 10 vs 12 bytes\n"
            "Type                 plain text document — match\n"
            "Digital Fingerprint  Different (SHA-256)\n"
            "SHA-256 is a digital fingerprint of the file. If the file changes, its fingerprint "
            "changes too.\n\n"
            "First Digital Fingerprint (SHA-256)\n" +
                comparison.firstHash + "\nSecond Digital Fingerprint (SHA-256)\n" +
                comparison.secondHash +
                "\n\n"
                "Text Differences  5 changed lines\n"
                "Showing the first 2 differences.\n"
                "Line 3\n  A  ⟨blank line⟩\n  B  x\n"
                "Line 4\n  A  y\n  B  ⟨no line⟩");

  const auto json = nlohmann::ordered_json::parse(comparisonJson(comparison));
  std::vector<std::string> keys;
  for (const auto& item : json.items()) keys.push_back(item.key());
  EXPECT_EQ(keys, (std::vector<std::string>{"firstPath", "secondPath", "firstSize", "secondSize",
                                            "firstType", "secondType", "firstHash", "secondHash",
                                            "identical", "textDifferences", "totalChangedLines",
                                            "pixelMatch", "pixelDimensions"}));
  EXPECT_EQ(json["firstPath"], "/a/first.txt");
  EXPECT_EQ(json["identical"], false);
  EXPECT_EQ(json["textDifferences"][1],
            (nlohmann::ordered_json{{"lineNumber", 4}, {"first", "y"}, {"second", nullptr}}));
  EXPECT_TRUE(json["pixelMatch"].is_null());

  // Identical files show neither the fingerprint card nor an empty text card.
  comparison.secondHash = comparison.firstHash;
  comparison.secondSize = comparison.firstSize;
  comparison.textDifferences.emplace();
  comparison.totalChangedLines = 0;
  const std::string identical = comparisonReport(comparison);
  EXPECT_TRUE(identical.starts_with("Exact Match\nThese files are byte-for-byte identical.\n"));
  EXPECT_NE(identical.find("Size                 10 bytes — match\n"), std::string::npos);
  EXPECT_TRUE(identical.ends_with("changes too.")) << identical;
}

}  // namespace
}  // namespace lumenscribe
