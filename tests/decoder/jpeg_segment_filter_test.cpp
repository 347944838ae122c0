// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/jpeg_segment_filter.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace lumenscribe::decoder {
namespace {

using Bytes = std::vector<std::byte>;

Bytes bytesOf(std::string_view text) {
  return Bytes(reinterpret_cast<const std::byte*>(text.data()),
               reinterpret_cast<const std::byte*>(text.data()) + text.size());
}

Bytes readFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  const std::string text((std::istreambuf_iterator<char>(in)), {});
  return bytesOf(text);
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

struct Segment {
  unsigned marker;
  std::string start;  // the payload's first bytes
};

std::vector<Segment> segmentsOf(const Bytes& jpeg) {
  std::vector<Segment> found;
  std::size_t at = 2;
  while (at + 4 <= jpeg.size()) {
    const unsigned marker = std::to_integer<unsigned>(jpeg[at + 1]);
    if (marker == 0xD9 || marker == 0xDA) {
      found.push_back({marker, ""});
      break;
    }
    const std::size_t length = std::to_integer<std::size_t>(jpeg[at + 2]) << 8 |
                               std::to_integer<std::size_t>(jpeg[at + 3]);
    std::string start;
    for (std::size_t i = 0; i < 4 && at + 4 + i < jpeg.size(); ++i) {
      start.push_back(std::to_integer<char>(jpeg[at + 4 + i]));
    }
    found.push_back({marker, start});
    at += 2 + length;
  }
  return found;
}

TEST(JpegSegmentFilter, keepsTheImageAndDropsWhatMetadataRewritesLeave) {
  const Bytes source = readFile(std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "cleancopy" /
                                "camera_gps_thumbnail.jpg");
  const auto filtered = filterJpegSegments(source);
  ASSERT_TRUE(filtered);
  std::vector<std::string> kept;
  for (const Segment& segment : segmentsOf(*filtered)) {
    if (segment.marker >= 0xE0 && segment.marker <= 0xEF) {
      kept.push_back(std::to_string(segment.marker - 0xE0) + ":" + segment.start);
    }
    EXPECT_NE(segment.marker, 0xFEu) << "a comment survived";
  }
  // The first EXIF segment (the metadata rewrite's, in a real copy) and the ICC profile; XMP,
  // Photoshop's IPTC and the comment are gone.
  EXPECT_EQ(kept, (std::vector<std::string>{"1:Exif", "2:ICC_"}));
  // The picture ends at its end-of-image marker: the appended clip is not copied.
  const std::string tail(reinterpret_cast<const char*>(filtered->data() + filtered->size() - 2), 2);
  EXPECT_EQ(tail, kEnd);
  const std::string whole(reinterpret_cast<const char*>(source.data()), source.size());
  const std::string copy(reinterpret_cast<const char*>(filtered->data()), filtered->size());
  EXPECT_NE(whole.find("MOTION-CLIP"), std::string::npos);
  EXPECT_EQ(copy.find("MOTION-CLIP"), std::string::npos);
  // From the (last) start of scan to the end of the image, byte for byte.
  const std::size_t scan = copy.rfind("\xFF\xDA");
  ASSERT_NE(scan, std::string::npos);
  EXPECT_NE(whole.find(copy.substr(scan)), std::string::npos);
}

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
