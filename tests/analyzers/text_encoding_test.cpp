// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/text_encoding.h"

#include <gtest/gtest.h>

#include <string>

#include "test_files.h"

namespace lumenscribe {
namespace {

using namespace std::string_literals;

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
      {"a\0"s, E::utf8, "a\0"s},
      // UTF-16: a byte-order mark decides the order and is dropped; big-endian without one.
      {"\xFF\xFE\x41\0"s, E::utf16, "A"},
      {"\xFE\xFF\0A"s, E::utf16, "A"},
      {"\0A\xD8\x3D\xDE\x00"s, E::utf16, "A\U0001F600"},
      {"\0A\0"s, E::utf16, std::nullopt},        // odd length
      {"\xD8\x3D\0A"s, E::utf16, std::nullopt},  // unpaired high surrogate
      {"\xDE\x00"s, E::utf16, std::nullopt},     // unpaired low surrogate
      {"\xFF\xFE\x41\0"s, E::utf16LittleEndian, "A"},
      {"\x3D\xD8\0\xDE"s, E::utf16LittleEndian, "\U0001F600"},
      {"\0\xD8"s, E::utf16LittleEndian, std::nullopt},
      {"\xFE\xFF\0A"s, E::utf16BigEndian, "A"},
      {"\0A\0"s, E::utf16BigEndian, std::nullopt},
      // UTF-32: the same for its byte-order mark; lengths, values past U+10FFFF and
      // surrogates are refused.
      {"\0\0\0A"s, E::utf32, "A"},
      {"\xFF\xFE\0\0\x41\0\0\0"s, E::utf32, "A"},
      {"\0\x01\xF6\0"s, E::utf32, "\U0001F600"},
      {"\0\0\0A\0"s, E::utf32, std::nullopt},
      {"\0\x11\0\0"s, E::utf32, std::nullopt},
      {"\0\0\xD8\0"s, E::utf32, std::nullopt},
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
// unit holds two valid UTF-16 units. (The text analysis's tests name the encoding of the
// other fixtures.)
TEST(TextEncoding, detectsTheFirstCandidateThatAcceptsEachFixture) {
  const std::pair<const char*, const char*> cases[] = {{"utf8_bom.txt", "UTF-8"},
                                                       {"utf32_bom.txt", "UTF-32"},
                                                       {"utf32_plain_words.txt", "UTF-16"},
                                                       {"latin1_odd.txt", "Mac OS Roman"},
                                                       {"contacts.log", "UTF-8"}};
  for (const auto& [file, encoding] : cases) {
    const auto decoded = detectTextEncoding(test::fileBytes(test::kData / "text" / file));
    ASSERT_TRUE(decoded) << file;
    EXPECT_EQ(decoded->encodingName(), encoding) << file;
  }
  EXPECT_EQ(detectTextEncoding(test::fileBytes(test::kData / "text/utf8_bom.txt"))->text(),
            "with bom\n");
  EXPECT_EQ(detectTextEncoding(test::fileBytes(test::kData / "text/utf32_bom.txt"))->text(),
            "sign \U0001D8D8 here\n");
  EXPECT_EQ(detectTextEncoding(test::fileBytes(test::kData / "text/latin1_odd.txt"))->text(),
            "Caf\u00C8 na\u00D4ve\n");
}

}  // namespace
}  // namespace lumenscribe
