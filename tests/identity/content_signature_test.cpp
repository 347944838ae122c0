// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/content_signature.h"

#include <gtest/gtest.h>

#include <span>

#include "platform/mime_database.h"

namespace lumenscribe {

void PrintTo(const ContentSignature& signature, std::ostream* out) {
  *out << "{" << signature.typeName << ", " << signature.category << ", " << signature.mimeType
       << ", " << signature.alsoAudio << "}";
}

namespace {

using namespace std::string_literals;

std::optional<ContentSignature> signatureOf(const std::string& bytes) {
  return contentSignatureOf(std::as_bytes(std::span(bytes.data(), bytes.size())));
}

std::string withPadding(std::string head, std::size_t size, char fill = '\0') {
  head.resize(size, fill);
  return head;
}

std::string isoMedia(std::string_view major, std::string_view compatible = "") {
  std::string box(4, '\0');
  box += "ftyp";
  box += major;
  box += std::string(4, '\0');
  box += compatible;
  box[3] = static_cast<char>(box.size());
  return withPadding(box, 64);
}

TEST(ContentSignature, firstMatchingTestInTableOrderDecides) {
  struct Case {
    std::string bytes;
    const char* typeName;  // nullptr: no signature
    const char* category;
    const char* mimeType;
  };
  // One case per rule, not per table row; the edges are where the faults hide.
  const Case cases[] = {
      {withPadding("\x89PNG\r\n\x1a\n"s, 40), "PNG image", "image", "image/png"},
      {"\x89PNG\r\n\x1a"s, nullptr, nullptr, nullptr},  // one byte short of the PNG magic
      {withPadding("\xFF\xD8\xFF\xE0"s, 40), "JPEG image", "image", "image/jpeg"},
      {"\xFF\xD8"s, nullptr, nullptr, nullptr},  // too short for JPEG, and not printable
      {"%PDF-1.7\n%\xE2\xE3\xCF\xD3\n"s, "PDF document", "pdf", "application/pdf"},
      {withPadding("PK\x03\x04"s, 30), "ZIP archive", "archive", "application/zip"},
      // An office document or e-book is a ZIP archive first.
      {withPadding("PK\x03\x04\x14\0\0\0mimetypeapplication/epub+zip"s, 80), "ZIP archive",
       "archive", "application/zip"},
      {withPadding("II*\0"s, 20), "TIFF image", "image", "image/tiff"},
      // The MIME database has no rule for Mach-O programs.
      {withPadding("\xCF\xFA\xED\xFE\x07\0\0\x01"s, 64), "Mach-O program", "executable", ""},
      {withPadding("RIFF\x24\0\0\0WAVEfmt "s, 44), "WAV audio", "audio", "audio/x-wav"},
      {withPadding("RIFF\0\0\0\0AVI LIST"s, 44), "AVI video", "video", "video/x-msvideo"},
      // A RIFF form we do not know goes on: here to the text heuristic.
      {"RIFF1234ABCD plain words"s, "Plain text", "text", "text/plain"},
      {withPadding("RIFF\x10\0\0\0ABCD"s, 44), nullptr, nullptr, nullptr},
      // Twelve bytes are enough for a RIFF form or an ISO brand; eleven skip both tests.
      {"RIFF\x24\0\0\0WAVE"s, "WAV audio", "audio", "audio/x-wav"},
      {"\0\0\0\x14"
       "ftypM4V "s,
       "M4V / MPEG-4 video", "video", "video/mp4"},
      {"RIFFabcdWAV"s, "Plain text", "text", "text/plain"},
      {isoMedia("M4V "), "M4V / MPEG-4 video", "video", "video/mp4"},
      // iPhone photos are HEIF images, whatever else their brands say.
      {isoMedia("heic", "mif1heic"), "HEIF image", "image", "image/heif"},
      {isoMedia("avif", "avifmif1miaf"), "AVIF image", "image", "image/avif"},
      // The structural brands say HEIF; their compatible brands tell AV1 from HEVC.
      {isoMedia("mif1", "mif1heic"), "HEIF image", "image", "image/heif"},
      {isoMedia("mif1", "mif1avifmiaf"), "AVIF image", "image", "image/avif"},
      {isoMedia("msf1"), "HEIF image", "image", "image/heif"},
      // Any other brand is MPEG-4 media, which the table checks below as audio too.
      {isoMedia("\xFF\xFE\xFD\xFC", "avif"), "MP4 / QuickTime media", "video", ""},
      {withPadding("ID3\x04\0\0\0\0\0\x0a"s, 30), "MP3 audio", "audio", ""},
      {"a"s, "Plain text", "text", "text/plain"},
      {"line one\r\n\tline two\n"s, "Plain text", "text", "text/plain"},
      {""s, nullptr, nullptr, nullptr},
      {std::string(64, '\x01'), nullptr, nullptr, nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.bytes));
    const auto signature = signatureOf(c.bytes);
    if (c.typeName == nullptr) {
      EXPECT_EQ(signature, std::nullopt);
    } else {
      ASSERT_TRUE(signature.has_value());
      EXPECT_EQ(signature->typeName, c.typeName);
      EXPECT_EQ(signature->category, c.category);
      EXPECT_EQ(signature->mimeType, c.mimeType);
    }
  }
}

TEST(ContentSignature, genericIsoBrandsFitAudioAndVideoAlike) {
  for (const char* brand : {"isom", "iso2", "mp41", "mp42", "qt  "}) {
    SCOPED_TRACE(brand);
    EXPECT_EQ(signatureOf(isoMedia(brand)),
              (ContentSignature{"MP4 / QuickTime media", "video", "", true}));
  }
}

TEST(ContentSignature, textNeedsMoreThanNinetyFivePercentPrintableBytes) {
  const ContentSignature text{"Plain text", "text", "text/plain", false};
  // 100 bytes with 5 control bytes is exactly 0.95: not text; with 4 it is.
  std::string five = std::string(95, 'x') + std::string(5, '\x01');
  std::string four = std::string(96, 'x') + std::string(4, '\x01');
  EXPECT_EQ(signatureOf(five), std::nullopt);
  EXPECT_EQ(signatureOf(four), text);
  // Bytes above 0x7F count against the ratio, so accented UTF-8 can fail it.
  std::string accented;
  for (int i = 0; i < 20; ++i) accented += "caf\xC3\xA9 ";
  EXPECT_EQ(signatureOf(accented), std::nullopt);
  // Only the first 512 bytes count.
  EXPECT_EQ(signatureOf(std::string(512, 'x') + std::string(512, '\x01')), text);
}

TEST(ContentSignature, categoriesFollowTypeConformance) {
  // epub inherits application/zip; x-bzip is also named by its alias x-bzip2; the database
  // files shell scripts as executables; x-compressed-tar inherits gzip. Categories are
  // case-sensitive, and "picture" is none.
  const std::pair<const char*, const char*> matching[] = {
      {"image/svg+xml", "image"},
      {"application/epub+zip", "archive"},
      {"application/x-bzip", "archive"},
      {"text/x-python", "text"},
      {"application/x-executable", "executable"},
      {"application/x-shellscript", "executable"},
      {"application/gzip", "compressed"},
      {"application/x-compressed-tar", "compressed"},
      {"image/svg+xml-compressed", "compressed"},
      {"application/x-bzip", "compressed"}};
  const std::pair<const char*, const char*> others[] = {
      {"application/pdf", "archive"},    {"audio/mp4", "video"},   {"text/plain", "executable"},
      {"application/zip", "compressed"}, {"image/png", "picture"}, {"image/png", "Image"}};
  for (const bool matches : {true, false}) {
    for (const auto& [name, category] :
         matches ? std::span<const std::pair<const char*, const char*>>(matching)
                 : std::span<const std::pair<const char*, const char*>>(others)) {
      SCOPED_TRACE(std::string(name) + " / " + category);
      const auto type = platform::contentTypeForName(name);
      ASSERT_TRUE(type.has_value()) << "the MIME database lacks " << name;
      EXPECT_EQ(contentTypeMatchesCategory(*type, category), matches);
    }
  }
}

}  // namespace
}  // namespace lumenscribe
