// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "core/path_text.h"
#include "core/utf8.h"

#include <gtest/gtest.h>

namespace lumenscribe {
namespace {

TEST(ValidUtf8, replacesEachIllFormedByteAndKeepsTheRest) {
  const std::string replacement = "\xEF\xBF\xBD";
  EXPECT_EQ(validUtf8("plain"), "plain");
  EXPECT_EQ(validUtf8("caf\xC3\xA9 \xF0\x9F\x93\xB7"), "caf\xC3\xA9 \xF0\x9F\x93\xB7");
  EXPECT_EQ(validUtf8("a\xFF"
                      "b"),
            "a" + replacement + "b");
  EXPECT_EQ(validUtf8("\xC0\xAF"), replacement + replacement);                    // overlong "/"
  EXPECT_EQ(validUtf8("\xED\xA0\x80"), replacement + replacement + replacement);  // surrogate
  EXPECT_EQ(validUtf8("\xF4\x90\x80\x80"),                                        // past U+10FFFF
            replacement + replacement + replacement + replacement);
  EXPECT_EQ(validUtf8("\xE2\x82"), replacement + replacement);  // cut short
  EXPECT_EQ(validUtf8(std::string("a\0b", 3)), std::string("a\0b", 3));
}

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

TEST(Utf8, refusesEveryIllFormedSequenceWhereverItStands) {
  using namespace std::string_literals;
  const std::pair<std::string, bool> cases[] = {
      {"", true},
      {"plain ASCII, longer than eight bytes", true},
      {"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", true},
      {"\xC0\xAF", false},               // overlong "/"
      {"\xE0\x80\xAF", false},           // overlong, three bytes
      {"\xED\xA0\x80", false},           // a surrogate
      {"\xF4\x90\x80\x80", false},       // past U+10FFFF
      {"\xE2\x82", false},               // cut short
      {"12345678\x80", false},            // a stray byte just after an all-ASCII word
      {"1234567\xC3\xA9", true},          // a sequence across the word boundary
      {"1234567\xC3", false},
  };
  for (const auto& [bytes, valid] : cases) {
    EXPECT_EQ(utf8::isValid(bytes), valid) << testing::PrintToString(bytes);
    EXPECT_EQ(validUtf8(bytes) == bytes, valid);
  }
}

}  // namespace
}  // namespace lumenscribe
