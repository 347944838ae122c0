// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/pdf_text.h"

#include <gtest/gtest.h>

#include <vector>

namespace lumenscribe::decoder {
namespace {

using Units = std::vector<std::uint16_t>;

TEST(PdfText, turnsPopplersUnitsIntoWellFormedUtf8) {
  EXPECT_EQ(utf8FromUtf16(Units{'a', 0xE9, 0x20AC, 0xD83D, 0xDE00}), "a\u00E9\u20AC\U0001F600");
  // Unpaired surrogates, at the end and in the middle, and a pair in the wrong order.
  EXPECT_EQ(utf8FromUtf16(Units{'a', 0xD83D}), "a\uFFFD");
  EXPECT_EQ(utf8FromUtf16(Units{0xDE00, 'b', 0xD83D, 'c'}), "\uFFFDb\uFFFDc");
  EXPECT_EQ(utf8FromUtf16(Units{0xDE00, 0xD83D}), "\uFFFD\uFFFD");
  EXPECT_EQ(utf8FromUtf16(Units{}), "");
}

TEST(PdfText, readsInfoByteStringsAsPdfDocEncodingOrMarkedUtf8) {
  // Byte strings: PDFDocEncoding where it differs from Latin-1, undefined bytes as U+FFFD.
  EXPECT_EQ(infoText(Units{'R', 'e', 'n', 0xE9, ' ', 0x92, ' ', 0x84, ' ', 0xA0}),
            "Ren\u00E9 \u2122 \u2014 \u20AC");
  EXPECT_EQ(infoText(Units{0x18, 0x7F, 0x9F, 0xAD}), "\u02D8\uFFFD\uFFFD\uFFFD");
  // UTF-8 behind its byte-order mark; without a valid sequence it stays PDFDocEncoding.
  EXPECT_EQ(infoText(Units{0xEF, 0xBB, 0xBF, 'G', 'r', 0xC3, 0xBC}), "Gr\u00FC");
  EXPECT_EQ(infoText(Units{0xEF, 0xBB, 0xBF, 0xC3}), "\u00EF\u00BB\u00BF\u00C3");
  // Anything above U+00FF came from a UTF-16 string already.
  EXPECT_EQ(infoText(Units{0x0152, 0x92}), "\u0152\u0092");
}

TEST(PdfText, findsVisibleTextAndCutsOnlyBetweenCharacters) {
  EXPECT_FALSE(hasVisibleText(""));
  EXPECT_FALSE(hasVisibleText("\f"));
  EXPECT_FALSE(hasVisibleText(" \t\r\n\u00A0\u2028\u3000\u0085"));
  EXPECT_TRUE(hasVisibleText("\f."));
  EXPECT_TRUE(hasVisibleText("\u200B"));  // a format character, not white space

  std::string text = "ab\u20AC";  // 2 + 3 bytes
  truncateText(text, 4);
  EXPECT_EQ(text, "ab");
  text = "ab\u20AC";
  truncateText(text, 5);
  EXPECT_EQ(text, "ab\u20AC");
}

}  // namespace
}  // namespace lumenscribe::decoder
