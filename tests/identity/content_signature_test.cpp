// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/content_signature.h"

#include <gtest/gtest.h>

#include "platform/mime_database.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

using namespace std::string_literals;
using test::TempDir;

std::optional<ContentSignature> signatureOf(const std::string& bytes) {
  return contentSignatureOf(std::as_bytes(std::span(bytes.data(), bytes.size())));
}

std::string withPadding(std::string head, std::size_t size, char fill = '\0') {
  head.resize(size, fill);
  return head;
}

TEST(ContentSignature, firstMatchingTestInTableOrderDecides) {
  struct Case {
    std::string bytes;
    const char* typeName;  // nullptr: no signature
    const char* category;
  };
  // One case per rule, not per table row; the edges are where the faults hide.
  const Case cases[] = {
      {withPadding("\x89PNG\r\n\x1a\n"s, 40), "PNG image", "image"},
      {"\x89PNG\r\n\x1a"s, nullptr, nullptr},  // one byte short of the PNG magic
      {"\xFF\xD8"s, nullptr, nullptr},         // too short for JPEG, and not printable
      {"%PDF-1.7\n%\xE2\xE3\xCF\xD3\n"s, "PDF document", "pdf"},
      // An office document or e-book is a ZIP archive first.
      {withPadding("PK\x03\x04\x14\0\0\0mimetypeapplication/epub+zip"s, 80), "ZIP archive",
       "archive"},
      {withPadding("MM\0*"s, 20), "TIFF image", "image"},
      {withPadding("RIFF\0\0\0\0AVI LIST"s, 44), "AVI video", "video"},
      // A RIFF form we do not know goes on: here to the text heuristic.
      {"RIFF1234ABCD plain words"s, "Plain text", "text"},
      {withPadding("RIFF\x10\0\0\0ABCD"s, 44), nullptr, nullptr},
      // Twelve bytes are enough for a RIFF form or an ISO brand; eleven skip both tests.
      {"RIFF\x24\0\0\0WAVE"s, "WAV audio", "audio"},
      {"\0\0\0\x14"
       "ftypM4V "s,
       "M4V / MPEG-4 video", "video"},
      {"RIFFabcdWAV"s, "Plain text", "text"},
      {withPadding("\0\0\0\x20"
                   "ftypM4A "s,
                   32),
       "M4A / MPEG-4 audio", "audio"},
      // Any other brand is video, even QuickTime or ISO base media holding only audio.
      {withPadding("\0\0\0\x18"
                   "ftyp\xFF\xFE\xFD\xFC"s,
                   32),
       "MP4 / QuickTime media", "video"},
      {withPadding("ID3\x04\0\0\0\0\0\x0a"s, 30), "MP3 audio", "audio"},
      {"a"s, "Plain text", "text"},
      {"line one\r\n\tline two\n"s, "Plain text", "text"},
      {""s, nullptr, nullptr},
      {std::string(64, '\x01'), nullptr, nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.bytes));
    const auto signature = signatureOf(c.bytes);
    if (c.typeName == nullptr) {
      EXPECT_EQ(signature, std::nullopt);
    } else {
      EXPECT_EQ(signature, (ContentSignature{c.typeName, c.category}));
    }
  }
}

TEST(ContentSignature, textNeedsMoreThanNinetyFivePercentPrintableBytes) {
  // 100 bytes with 5 control bytes is exactly 0.95: not text; with 4 it is.
  std::string five = std::string(95, 'x') + std::string(5, '\x01');
  std::string four = std::string(96, 'x') + std::string(4, '\x01');
  EXPECT_EQ(signatureOf(five), std::nullopt);
  EXPECT_EQ(signatureOf(four), (ContentSignature{"Plain text", "text"}));
  // Bytes above 0x7F count against the ratio, so accented UTF-8 can fail it.
  std::string accented;
  for (int i = 0; i < 20; ++i) accented += "caf\xC3\xA9 ";
  EXPECT_EQ(signatureOf(accented), std::nullopt);
  // Only the first 512 bytes count.
  EXPECT_EQ(signatureOf(std::string(512, 'x') + std::string(512, '\x01')),
            (ContentSignature{"Plain text", "text"}));
}

TEST(ContentSignature, detectionReadsOnlyTheHeadAndAnythingUnreadableHasNone) {
  TempDir dir;
  EXPECT_EQ(detectContentSignature(
                dir.write("long.txt", std::string(512, 'a') + std::string(4096, '\0'))),
            (ContentSignature{"Plain text", "text"}));
  EXPECT_EQ(detectContentSignature(dir.write("image.bin", "\x89PNG\r\n\x1a\n broken after this"s)),
            (ContentSignature{"PNG image", "image"}));
  EXPECT_EQ(detectContentSignature(dir.write("empty.txt", "")), std::nullopt);
  EXPECT_EQ(detectContentSignature(dir.path() / "missing"), std::nullopt);
  EXPECT_EQ(detectContentSignature(dir.path()), std::nullopt);  // a directory cannot be read
}

TEST(ContentSignature, categoriesFollowTypeConformance) {
  struct Case {
    const char* type;
    const char* category;
    bool matches;
  };
  const Case cases[] = {
      {"image/svg+xml", "image", true},
      {"application/pdf", "archive", false},
      {"application/epub+zip", "archive", true},  // inherits application/zip
      {"audio/mpeg", "audio", true},
      {"video/quicktime", "video", true},
      {"audio/mp4", "video", false},
      {"text/x-python", "text", true},
      {"application/pdf", "text", false},
      {"image/png", "Image", false},  // categories are case-sensitive
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.type) + " / " + c.category);
    const auto type = platform::contentTypeForName(c.type);
    ASSERT_TRUE(type.has_value()) << "the MIME database lacks " << c.type;
    EXPECT_EQ(contentTypeMatchesCategory(*type, c.category), c.matches);
  }
}

}  // namespace
}  // namespace lumenscribe
