// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/text_encoding.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace lumenscribe {
namespace {

const std::filesystem::path kTextFixtures =
    std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "text";

std::string contentsOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST(TextEncoding, eachDecoderRefusesWhatItCannotDecodeStrictly) {
  struct Case {
    std::string bytes;
    TextEncoding encoding;
    std::optional<std::string> text;  // nothing: refused
  };
  using E = TextEncoding;
  const Case cases[] = {
      {"caf\xC3\xA9", E::utf8, "caf\xC3\xA9"},
      {"\xEF\xBB\xBFhi", E::utf8, "hi"},
      {"\xC3\x28", E::utf8, std::nullopt},
      {"\xC0\xAF", E::utf8, std::nullopt},          // overlong
      {"\xED\xA0\x80", E::utf8, std::nullopt},      // a surrogate
      {"\xF4\x90\x80\x80", E::utf8, std::nullopt},  // past U+10FFFF
      {"abc\xE2\x82", E::utf8, std::nullopt},       // cut short
      {std::string("a\0", 2), E::utf8, std::string("a\0", 2)},
      // UTF-16: a byte-order mark decides the order and is dropped; big-endian without one.
      {std::string("\xFF\xFE"
                   "A\0",
                   4),
       E::utf16, "A"},
      {std::string("\xFE\xFF\0A", 4), E::utf16, "A"},
      {std::string("\0A\xD8\x3D\xDE\x00", 6), E::utf16, "A\U0001F600"},
      {std::string("\0A\0", 3), E::utf16, std::nullopt},        // odd length
      {std::string("\xD8\x3D\0A", 4), E::utf16, std::nullopt},  // unpaired high surrogate
      {std::string("\xDE\x00", 2), E::utf16, std::nullopt},     // unpaired low surrogate
      {std::string("\xFF\xFE"
                   "A\0",
                   4),
       E::utf16LittleEndian, "A"},
      {std::string("\x3D\xD8\0\xDE", 4), E::utf16LittleEndian, "\U0001F600"},
      {std::string("\0\xD8", 2), E::utf16LittleEndian, std::nullopt},
      {std::string("\xFE\xFF\0A", 4), E::utf16BigEndian, "A"},
      {std::string("\0A\0", 3), E::utf16BigEndian, std::nullopt},
      // UTF-32: the same for its byte-order mark; lengths, values past U+10FFFF and
      // surrogates are refused.
      {std::string("\0\0\0A", 4), E::utf32, "A"},
      {std::string("\xFF\xFE\0\0"
                   "A\0\0\0",
                   8),
       E::utf32, "A"},
      {std::string("\0\x01\xF6\0", 4), E::utf32, "\U0001F600"},
      {std::string("\0\0\0A\0", 5), E::utf32, std::nullopt},
      {std::string("\0\x11\0\0", 4), E::utf32, std::nullopt},
      {std::string("\0\0\xD8\0", 4), E::utf32, std::nullopt},
      // Every byte means something in Mac OS Roman and in ISO Latin-1.
      {"\x80\xE9\xFF", E::macOSRoman, "\u00C4\u00C8\u02C7"},
      {"\x80\xE9\xFF", E::isoLatin1, "\u0080\u00E9\u00FF"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.bytes) + " as " +
                 std::to_string(static_cast<int>(c.encoding)));
    const auto decoded = decodeText(c.bytes, c.encoding);
    ASSERT_EQ(decoded.has_value(), c.text.has_value());
    if (decoded) {
      EXPECT_EQ(decoded->text(), *c.text);
    }
  }
}

// What a file's bytes are taken for is the first candidate that accepts them, which is not
// always what wrote them: an even number of Latin-1 bytes is valid UTF-16, and every UTF-32
// unit holds two valid UTF-16 units.
TEST(TextEncoding, detectsTheFirstCandidateThatAcceptsEachFixture) {
  const std::string words = "Gr\u00FC\u00DFe 5 \u20AC\r\nzweite Zeile\r\n";
  struct Case {
    const char* file;
    const char* encoding;
    std::optional<std::string> text;
  };
  const Case cases[] = {
      {"empty.txt", "UTF-8", ""},
      {"utf8_bom.txt", "UTF-8", "with bom\n"},
      {"contacts.log", "UTF-8", std::nullopt},
      {"utf16le_bom.txt", "UTF-16", words},
      {"utf16be_bom.txt", "UTF-16", words},
      {"utf16be_no_bom.txt", "UTF-16", words},
      {"utf16le_no_bom.txt", "UTF-16 LE", words},
      {"utf32_bom.txt", "UTF-32", "sign \U0001D8D8 here\n"},
      {"utf32_plain_words.txt", "UTF-16", std::nullopt},
      {"latin1_odd.txt", "Mac OS Roman", "Caf\u00C8 na\u00D4ve\n"},
      {"latin1_even.txt", "UTF-16", std::nullopt},
      {"invalid_utf8.txt", "Mac OS Roman", std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    const std::string bytes = contentsOf(kTextFixtures / c.file);  // what a UTF-8 text views
    const auto decoded = detectTextEncoding(bytes);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->encodingName(), c.encoding);
    if (c.text) {
      EXPECT_EQ(decoded->text(), *c.text);
    }
  }
}

}  // namespace
}  // namespace lumenscribe
