// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/jpeg_segment_filter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lumenscribe::decoder {
namespace {

using Bytes = std::vector<std::byte>;

Bytes bytesOf(std::string_view text) {
  return Bytes(reinterpret_cast<const std::byte*>(text.data()),
               reinterpret_cast<const std::byte*>(text.data()) + text.size());
}

// A marker segment: FF, marker, big-endian length (two more than the payload), payload.
std::string segment(unsigned char marker, std::string_view payload) {
  const std::size_t length = payload.size() + 2;
  std::string out = {'\xFF', static_cast<char>(marker), static_cast<char>(length >> 8),
                     static_cast<char>(length & 0xFF)};
  return out.append(payload);
}

const std::string kStart("\xFF\xD8", 2);
const std::string kEnd("\xFF\xD9", 2);
const std::string kTables = segment(0xDB, std::string(65, '\1'));
// A scan header, then entropy-coded data holding a stuffed FF 00 and a restart marker.
const std::string kScan = segment(0xDA, std::string("\1\1\0\0\x3F\0", 6)) +
                          std::string("\x12\xFF\x00\x34\xFF\xD0\x56", 7);

TEST(JpegSegmentFilter, rewritesAndDropsApplicationSegmentsByWhatTheyHold) {
  const std::string jfifWithThumbnail =
      segment(0xE0, std::string("JFIF\0\1\2\1\0\x48\0\x48\1\1", 14) + "\x10\x20\x30");
  const std::string jfifWithout = segment(0xE0, std::string("JFIF\0\1\2\1\0\x48\0\x48\0\0", 14));
  const std::string jfxx = segment(0xE0, std::string("JFXX\0\x10thumb", 11));
  const std::string exif = segment(0xE1, std::string("Exif\0\0MM\0*", 10));
  const std::string secondExif = segment(0xE1, std::string("Exif\0\0II*\0", 10));
  const std::string extendedXmp =
      segment(0xE1, std::string("http://ns.adobe.com/xmp/extension/\0", 35));
  const std::string icc = segment(0xE2, std::string("ICC_PROFILE\0\1\1", 14));
  const std::string mpf = segment(0xE2, std::string("MPF\0MM", 6));
  const std::string adobe = segment(0xEE, "Adobe\0\x64\0\0\0\0\1");
  const std::string photoshop = segment(0xED, "Photoshop 3.0");
  const std::string maker = segment(0xE9, "private");
  const std::string comment = segment(0xFE, "a comment");

  const auto filtered = filterJpegSegments(
      bytesOf(kStart + jfifWithThumbnail + jfxx + exif + secondExif + extendedXmp + icc + mpf +
              adobe + photoshop + maker + comment + kTables + kScan + kEnd + "trailer"));
  ASSERT_TRUE(filtered);
  EXPECT_EQ(*filtered, bytesOf(kStart + jfifWithout + exif + icc + adobe + kTables + kScan + kEnd));
}

TEST(JpegSegmentFilter, copiesAPictureCutShortToItsEnd) {
  const std::string cut = kStart + kTables + kScan;
  const auto filtered = filterJpegSegments(bytesOf(cut + "\xFF"));
  ASSERT_TRUE(filtered);
  EXPECT_EQ(*filtered, bytesOf(cut + "\xFF"));
}

TEST(JpegSegmentFilter, refusesWhatItCannotWalk) {
  const struct {
    const char* name;
    std::string jpeg;
  } cases[] = {
      {"no start of image", "\xFF\xD9" + kTables + kScan + kEnd},
      {"too short", kStart},
      {"a segment past the end", kStart + kTables.substr(0, 20)},
      {"a length below 2", kStart + std::string("\xFF\xDB\x00\x01", 4) + kScan + kEnd},
      {"end of image before any scan", kStart + kTables + kEnd},
      {"a second start of image", kStart + kTables + kStart + kScan + kEnd},
      {"bytes between segments", kStart + kTables + "x" + kScan + kEnd},
      {"no scan at all", kStart + kTables},
  };
  for (const auto& test : cases) {
    EXPECT_FALSE(filterJpegSegments(bytesOf(test.jpeg))) << test.name;
  }
}

}  // namespace
}  // namespace lumenscribe::decoder
