// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/text_analysis.h"

#include <gtest/gtest.h>

#include <fstream>
#include <utility>

#include "test_files.h"

namespace lumenscribe {
namespace {

using Rows = std::vector<std::pair<std::string, std::string>>;

const std::filesystem::path kTextFixtures =
    std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "text";

Accumulators analyze(const std::filesystem::path& file) {
  Accumulators accumulators;
  analyzeText(test::openedItem(file), accumulators);
  return accumulators;
}

Rows rowsOf(const InsightSection& section) {
  Rows rows;
  for (const InsightRow& row : section.rows) rows.emplace_back(row.label, row.value);
  return rows;
}

TEST(TextAnalysis, reportsCountsContactDataAndFindingsOfALog) {
  const Accumulators result = analyze(kTextFixtures / "contacts.log");
  ASSERT_EQ(result.sections.size(), 1u);
  EXPECT_EQ(result.sections[0].title, "Text Analysis");
  EXPECT_EQ(result.sections[0].systemImage, "text.alignleft");
  const Rows rows = {{"Encoding", "UTF-8"},
                     {"Lines", "9"},
                     {"Words", "43"},
                     {"Characters", "414"},
                     {"Blank Lines", "3"},
                     {"Line Endings", "Unix/macOS (LF)"},
                     {"URLs", "2"},
                     {"Email Addresses", "3"},
                     {"IP Addresses", "2"},
                     {"Phone-like Numbers", "3"},
                     {"Longest Line", "90 characters"}};
  EXPECT_EQ(rowsOf(result.sections[0]), rows);
  const RawMetadata raw = {{"Text Encoding", "UTF-8"}, {"Text Lines", "9"},
                           {"Text Words", "43"},       {"Text Characters", "414"},
                           {"Text Blank Lines", "3"},  {"Text Line Endings", "Unix/macOS (LF)"},
                           {"Text URLs", "2"},         {"Text Email Addresses", "3"},
                           {"Text IP Addresses", "2"}, {"Text Phone-like Numbers", "3"}};
  EXPECT_EQ(result.rawMetadata, raw);
  EXPECT_EQ(result.summaryItems, std::vector<std::string>{"Text Analysis"});

  ASSERT_EQ(result.findings.size(), 4u);
  const std::pair<const char*, const char*> findings[] = {
      {"Email addresses are present",
       "This text contains 3 email address reference(s). Review before sharing if the file was "
       "not intended to expose contact information."},
      {"IP addresses are present",
       "This text contains 2 IP address reference(s). Lumenscribe counts them without exposing "
       "the actual values in the summary."},
      {"Phone-like numbers are present",
       "This text contains 3 phone-number-like reference(s). Review before sharing if the file "
       "may contain personal contact information."},
      {"Web links are present",
       "This text contains 2 web link(s). Lumenscribe has counted them but has not opened or "
       "visited them."},
  };
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(result.findings[i].title, findings[i].first);
    EXPECT_EQ(result.findings[i].detail, findings[i].second);
    EXPECT_EQ(result.findings[i].level, i == 3 ? PrivacyLevel::neutral : PrivacyLevel::notice);
  }
  // Only counts leave the analysis, never a matched value.
  for (const auto& [key, value] : result.rawMetadata) {
    EXPECT_EQ(value.find('@'), std::string::npos) << key;
    EXPECT_EQ(value.find("192.168"), std::string::npos) << key;
  }
}

TEST(TextAnalysis, countsEveryEncodingAndOddFileAsTheFirstDecoderReadsIt) {
  struct Case {
    const char* file;
    Rows rows;  // the first six rows
  };
  const Rows words = {{"Lines", "5"},
                      {"Words", "5"},
                      {"Characters", "23"},
                      {"Blank Lines", "3"},
                      {"Line Endings", "Windows (CRLF)"}};
  const auto with = [](const char* encoding, const Rows& rest) {
    Rows rows = {{"Encoding", encoding}};
    rows.insert(rows.end(), rest.begin(), rest.end());
    return rows;
  };
  const Case cases[] = {
      {"utf16le_bom.txt", with("UTF-16", words)},
      {"utf16be_bom.txt", with("UTF-16", words)},
      {"utf16be_no_bom.txt", with("UTF-16", words)},
      {"utf16le_no_bom.txt", with("UTF-16 LE", words)},
      {"utf32_bom.txt", with("UTF-32", {{"Lines", "2"},
                                        {"Words", "3"},
                                        {"Characters", "12"},
                                        {"Blank Lines", "1"},
                                        {"Line Endings", "Unix/macOS (LF)"}})},
      {"latin1_odd.txt", with("Mac OS Roman", {{"Lines", "2"},
                                               {"Words", "2"},
                                               {"Characters", "11"},
                                               {"Blank Lines", "1"},
                                               {"Line Endings", "Unix/macOS (LF)"}})},
      // Six CJK-and-symbol UTF-16 units, the last of them U+210A: no space, no line break.
      {"latin1_even.txt", with("UTF-16", {{"Lines", "1"},
                                          {"Words", "1"},
                                          {"Characters", "6"},
                                          {"Blank Lines", "0"},
                                          {"Line Endings", "Single line / none detected"}})},
      {"invalid_utf8.txt", with("Mac OS Roman", {{"Lines", "2"},
                                                 {"Words", "5"},
                                                 {"Characters", "17"},
                                                 {"Blank Lines", "1"},
                                                 {"Line Endings", "Unix/macOS (LF)"}})},
      {"only_crlf.txt", with("UTF-8", {{"Lines", "9"},
                                       {"Words", "0"},
                                       {"Characters", "4"},
                                       {"Blank Lines", "9"},
                                       {"Line Endings", "Windows (CRLF)"}})},
      {"empty.txt", with("UTF-8", {{"Lines", "1"},
                                   {"Words", "0"},
                                   {"Characters", "0"},
                                   {"Blank Lines", "1"},
                                   {"Line Endings", "Single line / none detected"}})},
      {"nul_bytes.txt", with("UTF-8", {{"Lines", "3"},
                                       {"Words", "2"},
                                       {"Characters", "21"},
                                       {"Blank Lines", "1"},
                                       {"Line Endings", "Unix/macOS (LF)"}})},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    const Accumulators result = analyze(kTextFixtures / c.file);
    ASSERT_EQ(result.sections.size(), 1u);
    Rows rows = rowsOf(result.sections[0]);
    ASSERT_GE(rows.size(), 6u);
    rows.resize(6);
    EXPECT_EQ(rows, c.rows);
    EXPECT_EQ(result.rawMetadata.at("Text Encoding"), c.rows[0].second);
  }

  // Nothing to count: no count rows, no longest line, no findings, but every raw key.
  const Accumulators empty = analyze(kTextFixtures / "empty.txt");
  EXPECT_EQ(empty.sections[0].rows.size(), 6u);
  EXPECT_TRUE(empty.findings.empty());
  EXPECT_EQ(empty.rawMetadata.size(), 10u);
  EXPECT_EQ(empty.rawMetadata.at("Text URLs"), "0");
  EXPECT_EQ(empty.rawMetadata.count("Text Source Type"), 0u);
}

TEST(TextAnalysis, readsTheTextAsItWasOpenedAndSurvivesItsTruncation) {
  test::TempDir dir;
  const auto file = dir.write("notes.txt", std::string(1 << 20, 'a') + "\nlast line\n");
  // Grown after the open: only the bytes it had count.
  const platform::OpenedItem grown = test::openedItem(file);
  std::ofstream(file, std::ios::app) << "one more line\n";
  Accumulators counted;
  analyzeText(grown, counted);
  ASSERT_EQ(counted.sections.size(), 1u);
  EXPECT_EQ(rowsOf(counted.sections[0])[1], (std::pair<std::string, std::string>{"Lines", "3"}));

  // Cut to a few bytes after the open: no section, and above all no crash.
  const platform::OpenedItem cut = test::openedItem(file);
  std::filesystem::resize_file(file, 3);
  Accumulators none;
  analyzeText(cut, none);
  EXPECT_TRUE(none.sections.empty());
}

TEST(TextAnalysis, namesTheSourceTypeByTheLowerCasedExtension) {
  const Accumulators script = analyze(kTextFixtures / "script.PY");
  const Rows rows = rowsOf(script.sections.at(0));
  EXPECT_EQ(rows.at(6), (std::pair<std::string, std::string>{"Source Type", "Python"}));
  EXPECT_EQ(script.rawMetadata.at("Text Source Type"), "Python");

  const std::pair<const char*, std::optional<std::string>> cases[] = {
      {"/x/main.SWIFT", "Swift"},
      {"/x/view.mm", "Objective-C / Objective-C++"},
      {"/x/a.c", "C"},
      {"/x/a.h", "C / C++"},
      {"/x/Build.kts", "Kotlin"},
      {"/x/a.markdown", "Markdown"},
      {"/x/run.zsh", "Shell Script"},
      {"/x/q.sql", "SQL"},
      {"/x/notes.txt", std::nullopt},
      {"/x/Makefile", std::nullopt},
      {"/x/archive.tar.gz", std::nullopt},
      {"/x/trailing.", std::nullopt},
  };
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
  ASSERT_EQ(result.sections.size(), 1u);
  const Rows rows = rowsOf(result.sections[0]);
  const auto length = std::to_string(line.size());
  EXPECT_EQ(rows.at(1).second, "1");
  EXPECT_EQ(rows.at(2).second, std::to_string(line.size() / 10 + 1));  // "10.0.word" ...
  EXPECT_EQ(rows.at(3).second, length);
  EXPECT_EQ(rows.back(),
            (std::pair<std::string, std::string>{"Longest Line", length + " characters"}));
  EXPECT_EQ(result.rawMetadata.at("Text IP Addresses"), "0");
}

}  // namespace
}  // namespace lumenscribe
