// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/content_patterns.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "icu_reference.h"
#include "platform/grapheme_clusters.h"

namespace lumenscribe {

void PrintTo(const ContentCounts& counts, std::ostream* out) {
  *out << "{email " << counts.emailAddresses << ", phone " << counts.phoneNumbers << ", ip "
       << counts.ipAddresses << ", link " << counts.webLinks << "}";
}

namespace {

TEST(ContentPatterns, countsWhatTheExpressionsMatchInHandCountedTexts) {
  struct Case {
    const char* text;
    ContentCounts counts;  // email, phone, ip, link
  };
  const Case cases[] = {
      {"", {}},
      {"Mail Ann.Lee@Example.ORG or see https://example.org/a?b=c", {1, 0, 0, 1}},
      {"ADA@LOVELACE.IO and ada@lovelace.io", {2, 0, 0, 0}},
      {"HTTPS://EXAMPLE.ORG and Http://x.y are not links", {0, 0, 0, 0}},
      {"http:// alone, http://\"quoted\" and https://ok", {0, 0, 0, 1}},
      {"<https://a.example/x>'https://b.example'", {0, 0, 0, 2}},
      {"http://a.example/?next=http://b.example", {0, 0, 0, 1}},
      {"Call 555-123-4567", {0, 1, 0, 0}},
      {"(555) 123-4567, +1 555 123 4567 and 555.123.4567", {0, 3, 0, 0}},
      {"5551234567 has no separator before its last four", {0, 0, 0, 0}},
      {"+1 (555) 123-4567 and +1-(555)-123-4567", {0, 2, 0, 0}},
      {"1-555-123-4567 x 15551234567", {0, 1, 0, 0}},
      {"10.0.0.256 no, 192.168.1.10 yes", {0, 0, 1, 0}},
      {"256.1.1.1 no, 10.0.0.1 yes, 1.2.3.4.5 once", {0, 0, 2, 0}},
      {"01.02.003.4 and 1.2.3 and 11.22.33.44x", {0, 0, 1, 0}},
      {"a@b.c is too short, a@b.cd is not, @x.org has no name", {1, 0, 0, 0}},
      {"x@foo.b@bar.com", {1, 0, 0, 0}},
      {"first.last+tag@sub.domain.co.uk.", {1, 0, 0, 0}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(countContentPatterns(c.text), c.counts);
    EXPECT_EQ(test::icuContentCounts(c.text), c.counts);
  }
}

// Texts made to sit on the edges where a hand-made matcher could part from ICU: digits of
// other scripts (Arabic-Indic, fullwidth, and outside the basic plane), letters that fold
// to ASCII (U+017F LONG S, U+212A KELVIN SIGN), white space beyond ASCII, combining marks,
// emoji sequences, regional indicators, Hangul, CR LF, NUL.
const std::string kTrickyTexts[] = {
    "\u0661\u0662\u0663-\u0664\u0665\u0666-\u0667\u0668\u0669\u0660",
    "555-123-4567\u0663 and \u0663555-123-4567",
    "\xF0\x9D\x9F\x8F"
    "10.0.0.1 and 10.0.0.1\xF0\x9D\x9F\x8F",
    "\uFF11\uFF10.0.0.1 \uFF12\uFF15\uFF15.1.1.1 25\uFF15.1.1.1",
    "\u017Fam@example.com k\u212Aelvin@x.org user@\u212A.\u017F\u017F",
    "ann@example.c\u017F and bob@example.\u212A",
    "https://a.example/\u00A0tail https://b.example/\u2003x https://c\u3000d",
    "Call\u00A0555\u00A0123\u00A04567 or 555\u2028123\u20294567",
    "e\u0301 a\u0308\u0308 \U0001F468\u200D\U0001F469\u200D\U0001F467 "
    "\U0001F1E9\U0001F1EA\U0001F1EB",
    "\u1100\u1161\u11A8 \uAC00\u11A8 \u0915\u094D\u0937 \u0E01\u0E33",
    "a\r\nb\r\r\n\n\u0301\r\u0301\n",
    "\u0600\u0661\u0662 \u0600a \U000110BD1",
    std::string("nul\0byte@example.org 10.0.0.1\0", 30),
    "1+1 555-123-4567 +1(555)123-4567 1 (555) 123-4567 +15551234567",
    "12.34.56.78.90.12.34.56.78 255.255.255.255 249.250.251.252",
    "a@b.cc@d.ee@f.gg x@@y.zz x@.y.zz x@y..zz",
};

TEST(ContentPatterns, agreeWithIcuOnTrickyTexts) {
  platform::GraphemeCounter graphemes;
  for (const std::string& text : kTrickyTexts) {
    SCOPED_TRACE(text);
    EXPECT_EQ(countContentPatterns(text), test::icuContentCounts(text));
    EXPECT_EQ(graphemes.count(text), test::icuGraphemeCount(text));
  }
}

// Random texts stitched from pieces that feed every branch of the matchers: short ones full
// of other scripts, and long ASCII ones where the fast paths and prefilters take over.
TEST(ContentPatterns, agreeWithIcuOnRandomTexts) {
  // Pieces between bars; the last is a NUL.
  const std::string asciiPieces =
      "0|1|2|5|9|25|255|256|1.|.|-|(|)|+|+1| "
      "|\t|\n|\r\n|\r|a|Z|x|@|_|%|http|https|://|s|:|/|<|\"|'|"
      "org|com|555|123|4567|2026|10|0.|192|168.|" +
      std::string(1, '\0');
  std::vector<std::string> ascii;
  for (std::size_t start = 0, bar; start <= asciiPieces.size(); start = bar + 1) {
    bar = std::min(asciiPieces.find('|', start), asciiPieces.size());
    ascii.push_back(asciiPieces.substr(start, bar - start));
  }
  std::vector<std::string> pieces = ascii;
  for (const char* other : {"\u00A0", "\u2028", "\u0663", "\uFF15", "\xF0\x9D\x9F\x8F", "\u017F",
                            "\u212A", "\u0301", "\u200D", "\U0001F469", "\U0001F1E9", "\uAC00",
                            "\u1100", "\u0915\u094D", "\u0600", "\u00E9", "\u4E2D"}) {
    pieces.push_back(other);
  }
  std::mt19937 random(20260518);
  platform::GraphemeCounter graphemes;
  for (int round = 0; round < 4000; ++round) {
    const bool asciiOnly = round % 2 == 1;
    const auto& alphabet = asciiOnly ? ascii : pieces;
    std::uniform_int_distribution<std::size_t> pick(0, alphabet.size() - 1);
    std::uniform_int_distribution<int> length(0, asciiOnly ? 160 : 40);
    std::string text;
    for (int i = length(random); i > 0; --i) text += alphabet[pick(random)];
    SCOPED_TRACE(testing::PrintToString(text));
    ASSERT_EQ(countContentPatterns(text), test::icuContentCounts(text));
    ASSERT_EQ(graphemes.count(text), test::icuGraphemeCount(text));
  }
}

}  // namespace
}  // namespace lumenscribe
