// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/text_statistics.h"

#include <gtest/gtest.h>

#include <string>

#include "analyzers/text_lines.h"
#include "icu_reference.h"
#include "platform/grapheme_clusters.h"

namespace lumenscribe {

void PrintTo(const TextStatistics& s, std::ostream* out) {
  *out << "{lines " << s.lines << ", words " << s.words << ", characters " << s.characters
       << ", blank " << s.blankLines << ", longest " << s.longestLine << ", crlf "
       << s.lineEndings.crlf << ", lf " << s.lineEndings.lf << ", cr " << s.lineEndings.cr << "}";
}

namespace {

TEST(TextStatistics, countsLinesWordsCharactersAndLineEndingsByHand) {
  struct Case {
    std::string text;
    TextStatistics expected;  // lines, words, characters, blank, longest, {crlf, lf, cr}
  };
  const Case cases[] = {
      {"", {1, 0, 0, 1, 0, {}}},
      // Pieces a, "", b, "", "": each CR LF is one character.
      {"a\r\nb\r\n", {5, 2, 4, 3, 1, {2, 0, 0}}},
      {"a\nb\rc", {3, 3, 5, 0, 1, {0, 1, 1}}},
      // The CR and LF left once the pair is removed form one CR LF character.
      {"\r\r\n\n", {5, 0, 3, 5, 0, {1, 0, 0}}},
      {"\r\r\n\n\n", {6, 0, 4, 6, 0, {1, 1, 0}}},
      {"\r\n\r\n\r\n\r\n", {9, 0, 4, 9, 0, {4, 0, 0}}},
      // Vertical tab, form feed, NEL, LINE and PARAGRAPH SEPARATOR end lines too, but are
      // no line endings of any convention.
      {"a\vb\fc\u0085d\u2028e\u2029f", {6, 6, 11, 0, 1, {}}},
      // Combining marks join their letter; no-break and ideographic spaces part words.
      {"e\u0301\u0301x  \u00A0y\u3000z", {1, 3, 8, 0, 8, {}}},
      {"\t \u3000\n", {2, 0, 4, 2, 3, {0, 1, 0}}},
      {"\U0001F468\u200D\U0001F469\u200D\U0001F467 ok \U0001F1E9\U0001F1EA\U0001F1EB",
       {1, 3, 7, 0, 7, {}}},
      {std::string("one\0two\0\0three\nfour\0\n", 21), {3, 2, 21, 1, 14, {0, 2, 0}}},
  };
  platform::GraphemeCounter graphemes;
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    EXPECT_EQ(computeTextStatistics(c.text), c.expected);
    EXPECT_EQ(computeTextStatistics(c.text).characters, test::icuGraphemeCount(c.text));
    EXPECT_EQ(graphemes.count(c.text), c.expected.characters);
  }
}

std::string repeated(std::string_view piece, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += piece;
  return text;
}

// ICU gets only the stretches around joining characters; the cuts between stretches must
// fall where ICU would break anyway, however long the runs around them.
TEST(TextStatistics, countsCharactersAsIcuDoesAcrossLongAndShortStretches) {
  const std::string ascii(40, 'a');
  const std::string texts[] = {
      "e\u0301" + ascii + "\U0001F469\u200D\U0001F469" + ascii + "\u0301",
      ascii + "\r\n\u0301" + ascii + "\r" + "\u0301\n" + ascii,
      "\u0915\u094D\u0937\u093F " + ascii + " \u0915\u093F" + std::string(31, 'b') + "\u0301",
      "\u1100" + ascii + "\u1161\u11A8" + std::string(33, ' ') + "\uAC00\u11A8",
      "\U0001F1E9" + std::string(32, 'x') + "\U0001F1EA\U0001F1EB\U0001F1E9",
      "\u0600" + ascii + "\u0600x\u0600\u0600\r\n\u0600",
      "e\u0301" + repeated("\u00E9", 40) + "\u0301" + repeated("\u4E2D", 40) + "\u0308",
      "\u0301" + repeated("\r\n", 40) + "\u0301\r\n",
  };
  platform::GraphemeCounter graphemes;
  for (const std::string& text : texts) {
    SCOPED_TRACE(testing::PrintToString(text));
    EXPECT_EQ(graphemes.count(text), test::icuGraphemeCount(text));
    EXPECT_EQ(computeTextStatistics(text).characters, test::icuGraphemeCount(text));
  }
}

TEST(TextLines, splitsAtEverySeparatorAndLabelsTheLineEndings) {
  using Pieces = std::vector<std::string_view>;
  EXPECT_EQ(splitLines(""), Pieces{""});
  EXPECT_EQ(splitLines("a\r\nb"), (Pieces{"a", "", "b"}));
  EXPECT_EQ(splitLines("x\u2029y\u0085\n"), (Pieces{"x", "y", "", ""}));
  EXPECT_EQ(splitLines("caf\u00E9\u2028"), (Pieces{"caf\u00E9", ""}));

  struct Case {
    const char* text;
    const char* label;
  };
  const Case cases[] = {
      {"", "Single line / none detected"},
      {"one line", "Single line / none detected"},
      {"a\vb", "Single line / none detected"},
      {"a\r\nb\r\n", "Windows (CRLF)"},
      {"a\nb\n", "Unix/macOS (LF)"},
      {"a\rb\r", "Classic Mac (CR)"},
      {"a\nb\rc", "Mixed"},
      {"a\r\nb\nc\rd", "Mixed"},
      {"\r\r\n\n", "Windows (CRLF)"},
      {"\r\r\n\r\n\n", "Windows (CRLF)"},
      {"\r\r\n\nx\n", "Mixed"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(std::string(c.text)));
    EXPECT_EQ(describeLineEndings(c.text), c.label);
    EXPECT_EQ(lineEndingLabel(computeTextStatistics(c.text).lineEndings), c.label);
  }
}

}  // namespace
}  // namespace lumenscribe
