// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/text_analysis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <utility>

#include "test_files.h"

namespace lumenscribe {
namespace {

using test::Rows;

const std::filesystem::path kTextFixtures = test::kData / "text";

Accumulators analyze(const std::filesystem::path& file) {
  Accumulators accumulators;
  analyzeText(test::openedItem(file), accumulators);
  return accumulators;
}

Rows rowsOf(const Accumulators& accumulators) {
  return test::rowsOf(accumulators.sections, "Text Analysis");
}

TEST(TextAnalysis, reportsCountsContactDataAndFindingsOfALog) {
  const Accumulators result = analyze(kTextFixtures / "contacts.log");
  ASSERT_EQ(result.sections.size(), 1u);
  const test::Lines rows = {"Encoding: UTF-8",
                            "Lines: 9",
                            "Words: 43",
                            "Characters: 414",
                            "Blank Lines: 3",
                            "Line Endings: Unix/macOS (LF)",
                            "URLs: 2",
                            "Email Addresses: 3",
                            "IP Addresses: 2",
                            "Phone-like Numbers: 3",
                            "Longest Line: 90 characters"};
  EXPECT_EQ(test::lines(result.sections, "Text Analysis"), rows);
  // Every row but the longest line has its raw twin, and nothing else is raw.
  test::Lines raw;
  for (std::size_t i = 0; i + 1 < rows.size(); ++i) raw.push_back("Text " + rows[i]);
  std::sort(raw.begin(), raw.end());
  EXPECT_EQ(test::lines(result.rawMetadata), raw);
  EXPECT_EQ(result.summaryItems, std::vector<std::string>{"Text Analysis"});

  EXPECT_EQ(test::titlesOf(result.findings),
            (std::vector<std::string>{"Email addresses are present", "IP addresses are present",
                                      "Phone-like numbers are present", "Web links are present"}));
  std::vector<PrivacyLevel> levels;
  for (const auto& finding : result.findings) levels.push_back(finding.level);
  using enum PrivacyLevel;
  EXPECT_EQ(levels, (std::vector{notice, notice, notice, neutral}));
  // Each finding tells its own count; none tells a matched value.
  for (const auto& [finding, count] : {std::pair{0, "contains 3 email"},
                                       {1, "contains 2 IP"},
                                       {2, "contains 3 phone"},
                                       {3, "contains 2 web"}}) {
    EXPECT_NE(result.findings[finding].detail.find(count), std::string::npos) << count;
  }
  for (const auto& finding : result.findings) {
    EXPECT_EQ(finding.detail.find('@'), std::string::npos);
    EXPECT_EQ(finding.detail.find("192.168"), std::string::npos);
  }
}

TEST(TextAnalysis, countsEveryEncodingAndOddFileAsTheFirstDecoderReadsIt) {
  // Encoding, lines, words, characters, blank lines, line endings: the first six rows.
  const std::pair<const char*, const char*> cases[] = {
      {"utf16le_bom.txt", "UTF-16 5 5 23 3 Windows (CRLF)"},
      {"utf16be_bom.txt", "UTF-16 5 5 23 3 Windows (CRLF)"},
      {"utf16be_no_bom.txt", "UTF-16 5 5 23 3 Windows (CRLF)"},
      {"utf16le_no_bom.txt", "UTF-16 LE 5 5 23 3 Windows (CRLF)"},
      {"utf32_bom.txt", "UTF-32 2 3 12 1 Unix/macOS (LF)"},
      {"latin1_odd.txt", "Mac OS Roman 2 2 11 1 Unix/macOS (LF)"},
      // Six CJK-and-symbol UTF-16 units, the last of them U+210A: no space, no line break.
      {"latin1_even.txt", "UTF-16 1 1 6 0 Single line / none detected"},
      {"invalid_utf8.txt", "Mac OS Roman 2 5 17 1 Unix/macOS (LF)"},
      {"only_crlf.txt", "UTF-8 9 0 4 9 Windows (CRLF)"},
      {"empty.txt", "UTF-8 1 0 0 1 Single line / none detected"},
      {"nul_bytes.txt", "UTF-8 3 2 21 1 Unix/macOS (LF)"},
  };
  for (const auto& [file, expected] : cases) {
    SCOPED_TRACE(file);
    const Rows rows = rowsOf(analyze(kTextFixtures / file));
    ASSERT_GE(rows.size(), 6u);
    std::string firstSix = rows[0].second;
    for (std::size_t i = 1; i < 6; ++i) firstSix += " " + rows[i].second;
    EXPECT_EQ(firstSix, expected);
  }

  // Nothing to count: no count rows, no longest line, no findings, but every raw key.
  const Accumulators empty = analyze(kTextFixtures / "empty.txt");
  EXPECT_EQ(empty.sections.at(0).rows.size(), 6u);
  EXPECT_TRUE(empty.findings.empty());
  EXPECT_EQ(empty.rawMetadata.size(), 10u);
  EXPECT_EQ(empty.rawMetadata.at("Text URLs"), "0");
}

TEST(TextAnalysis, readsTheTextAsItWasOpenedAndSurvivesItsTruncation) {
  test::TempDir dir;
  const auto file = dir.write("notes.txt", std::string(1 << 20, 'a') + "\nlast line\n");
  // Grown after the open: only the bytes it had count.
  const platform::OpenedItem grown = test::openedItem(file);
  std::ofstream(file, std::ios::app) << "one more line\n";
  Accumulators counted;
  analyzeText(grown, counted);
  EXPECT_EQ(test::rowValue(counted.sections, "Text Analysis", "Lines"), "3");

  // Cut to a few bytes after the open: no section, and above all no crash.
  const platform::OpenedItem cut = test::openedItem(file);
  std::filesystem::resize_file(file, 3);
  Accumulators none;
  analyzeText(cut, none);
  EXPECT_TRUE(none.sections.empty());
}

TEST(TextAnalysis, namesTheSourceTypeByTheLowerCasedLastExtension) {
  const Accumulators script = analyze(kTextFixtures / "script.PY");
  EXPECT_EQ(rowsOf(script).at(6), (std::pair<std::string, std::string>{"Source Type", "Python"}));
  EXPECT_EQ(script.rawMetadata.at("Text Source Type"), "Python");
  EXPECT_EQ(analyze(kTextFixtures / "empty.txt").rawMetadata.count("Text Source Type"), 0u);

  const std::pair<const char*, std::optional<std::string>> cases[] = {
      {"/x/main.SWIFT", "Swift"},
      {"/x/Build.kts", "Kotlin"},
      {"/x/q.sql", "SQL"},
      {"/x/Makefile", std::nullopt},
      {"/x/archive.tar.gz", std::nullopt},
      {"/x/trailing.", std::nullopt},
      {"/x/sh.d/notes", std::nullopt}};
  for (const auto& [path, language] : cases) {
    EXPECT_EQ(sourceLanguage(path), language) << path;
  }
}

TEST(TextAnalysis, countsAFiftyMegabyteLineWithoutLineBreaks) {
  test::TempDir dir;
  std::string line;
  line.reserve(50 * 1024 * 1024);
  while (line.size() + 10 <= 50 * 1024 * 1024) line += "word 10.0.";
  const Accumulators result = analyze(dir.write("one-line.txt", line));
  const auto length = std::to_string(line.size());
  const auto value = [&](const char* label) {
    return test::rowValue(result.sections, "Text Analysis", label);
  };
  EXPECT_EQ(value("Lines"), "1");
  EXPECT_EQ(value("Words"), std::to_string(line.size() / 10 + 1));  // "10.0.word" ...
  EXPECT_EQ(value("Characters"), length);
  EXPECT_EQ(value("Longest Line"), length + " characters");
  EXPECT_EQ(result.rawMetadata.at("Text IP Addresses"), "0");
}

}  // namespace
}  // namespace lumenscribe
