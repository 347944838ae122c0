// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "core/path_text.h"

#include <gtest/gtest.h>

#include "core/utf8.h"

namespace lumenscribe {
namespace {

TEST(PathText, findsNameAndExtensionAsAFileManagerWould) {
  struct Case {
    const char* path;
    const char* name;
    const char* extension;
  };
  for (const Case& c :
       {Case{"/a/photo.JPG", "photo.JPG", "JPG"}, Case{"/a/archive.tar.gz", "archive.tar.gz", "gz"},
        Case{"/a/README", "README", ""}, Case{"/a/trailing.", "trailing.", ""},
        Case{"/a/.bashrc", ".bashrc", ""}, Case{"/a/dir.app/", "dir.app", "app"},
        Case{"/", "/", ""}}) {
    EXPECT_EQ(lastPathComponent(c.path), c.name) << c.path;
    EXPECT_EQ(pathExtension(c.path), c.extension) << c.path;
  }
  EXPECT_EQ(asciiLower("PhOTO.JPG \xC3\x89"), "photo.jpg \xC3\x89");
}

// RFC 3986 lets a URL's path hold unreserved characters, sub-delimiters, ":", "@", "/" and
// percent escapes, nothing else; decoding the escapes must give the path back byte for byte.
TEST(FileUrl, isAValidUrlThatDecodesToThePathForAwkwardNames) {
  constexpr std::string_view kPathCharacters =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~!$&'()*+,;=:@/";
  const auto hex = [](char c) { return std::string_view("0123456789ABCDEF").find(c); };
  for (const std::string path :
       {"/home/me/a b.txt", "/x/[1] ^up\\back`tick#hash?query%25 100%.txt", "/x/\xFF\n%\x7F",
        "/x/caf\xC3\xA9", "/x/a+b=c;d,e&f!g$h'i(j)k*l:m@n~"}) {
    SCOPED_TRACE(path);
    const std::string url = fileUrl(path);
    ASSERT_TRUE(url.starts_with("file:///"));
    std::string decoded;
    for (std::size_t i = 7; i < url.size(); ++i) {
      if (url[i] == '%') {
        ASSERT_LT(i + 2, url.size());
        ASSERT_NE(hex(url[i + 1]), std::string_view::npos);
        ASSERT_NE(hex(url[i + 2]), std::string_view::npos);
        decoded.push_back(static_cast<char>(hex(url[i + 1]) * 16 + hex(url[i + 2])));
        i += 2;
      } else {
        EXPECT_NE(kPathCharacters.find(url[i]), std::string_view::npos) << url;
        decoded.push_back(url[i]);
      }
    }
    EXPECT_EQ(decoded, path);
  }
  EXPECT_EQ(fileUrl("/home/me/a b.txt"), "file:///home/me/a%20b.txt");
}

TEST(Utf8, refusesEveryIllFormedSequenceWhereverItStandsAndReplacesEachByteOfIt) {
  using namespace std::string_literals;
  const std::string r = "\uFFFD";
  const std::pair<std::string, std::string> cases[] = {
      // the bytes, and as valid UTF-8
      {"", ""},
      {"plain ASCII, longer than eight bytes", "plain ASCII, longer than eight bytes"},
      {"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"},
      {"a\0b"s, "a\0b"s},
      {"a\xFF"
       "b",
       "a" + r + "b"},
      {"\xC0\xAF", r + r},                     // overlong "/"
      {"\xE0\x80\xAF", r + r + r},             // overlong, three bytes
      {"\xED\xA0\x80", r + r + r},             // a surrogate
      {"\xF4\x90\x80\x80", r + r + r + r},     // past U+10FFFF
      {"\xE2\x82", r + r},                     // cut short
      {"12345678\x80", "12345678" + r},        // a stray byte just after an all-ASCII word
      {"1234567\xC3\xA9", "1234567\xC3\xA9"},  // a sequence across the word boundary
      {"1234567\xC3", "1234567" + r},
  };
  for (const auto& [bytes, valid] : cases) {
    EXPECT_EQ(utf8::isValid(bytes), bytes == valid) << testing::PrintToString(bytes);
    EXPECT_EQ(validUtf8(bytes), valid) << testing::PrintToString(bytes);
  }
}

}  // namespace
}  // namespace lumenscribe
