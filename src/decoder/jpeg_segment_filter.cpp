// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/jpeg_segment_filter.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace lumenscribe::decoder {

namespace {

constexpr std::uint8_t kStartOfImage = 0xD8;
constexpr std::uint8_t kEndOfImage = 0xD9;
constexpr std::uint8_t kStartOfScan = 0xDA;
constexpr std::uint8_t kApp0 = 0xE0;
constexpr std::uint8_t kApp1 = 0xE1;
constexpr std::uint8_t kApp2 = 0xE2;
constexpr std::uint8_t kApp14 = 0xEE;
constexpr std::uint8_t kApp15 = 0xEF;
constexpr std::uint8_t kComment = 0xFE;
// JFIF's fixed part: identifier, version, units, densities, thumbnail size.
constexpr std::size_t kJfifFixedSize = 14;

std::uint8_t at(std::span<const std::byte> bytes, std::size_t index) {
  return std::to_integer<std::uint8_t>(bytes[index]);
}

bool startsWith(std::span<const std::byte> payload, std::string_view prefix) {
  return payload.size() >= prefix.size() &&
         std::equal(prefix.begin(), prefix.end(), payload.begin(),
                    [](char a, std::byte b) { return static_cast<std::byte>(a) == b; });
}

// Markers that stand alone, without a length: TEM and the restart markers.
bool isStandalone(std::uint8_t marker) {
  return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7);
}

enum class Keep { whole, jfifWithoutThumbnail, drop };

Keep decide(std::uint8_t marker, std::span<const std::byte> payload, bool& exifKept) {
  if (marker == kComment) return Keep::drop;
  if (marker < kApp0 || marker > kApp15) return Keep::whole;
  switch (marker) {
    case kApp0:
      if (startsWith(payload, std::string_view("JFIF\0", 5)) && payload.size() >= kJfifFixedSize) {
        return Keep::jfifWithoutThumbnail;
      }
      return Keep::drop;  // JFXX thumbnails and the rest
    case kApp1:
      // The metadata rewrite leaves one EXIF segment, holding the orientation only.
      if (!exifKept && startsWith(payload, std::string_view("Exif\0\0", 6))) {
        exifKept = true;
        return Keep::whole;
      }
      return Keep::drop;
    case kApp2: return startsWith(payload, "ICC_PROFILE") ? Keep::whole : Keep::drop;
    case kApp14: return startsWith(payload, "Adobe") ? Keep::whole : Keep::drop;
    default: return Keep::drop;
  }
}

// The end of the entropy-coded data that starts at `from`: the first marker that is neither
// a stuffed zero nor a restart marker, or the end of the bytes.
std::size_t endOfScanData(std::span<const std::byte> jpeg, std::size_t from) {
  for (std::size_t i = from; i + 1 < jpeg.size(); ++i) {
    if (at(jpeg, i) != 0xFF) continue;
    const std::uint8_t next = at(jpeg, i + 1);
    if (next == 0x00 || next == 0xFF || (next >= 0xD0 && next <= 0xD7)) continue;
    return i;
  }
  return jpeg.size();
}

}  // namespace

std::optional<std::vector<std::byte>> filterJpegSegments(std::span<const std::byte> jpeg) {
  if (jpeg.size() < 4 || at(jpeg, 0) != 0xFF || at(jpeg, 1) != kStartOfImage) return std::nullopt;
  std::vector<std::byte> out(jpeg.begin(), jpeg.begin() + 2);
  out.reserve(jpeg.size());
  bool exifKept = false;
  bool sawScan = false;
  std::size_t position = 2;
  // Every pass moves past at least one marker's two bytes.
  while (position < jpeg.size()) {
    if (at(jpeg, position) != 0xFF) return std::nullopt;
    // Fill bytes may pad any marker.
    while (position + 1 < jpeg.size() && at(jpeg, position + 1) == 0xFF) ++position;
    if (position + 1 >= jpeg.size()) return std::nullopt;
    const std::uint8_t marker = at(jpeg, position + 1);
    if (marker == kEndOfImage) {
      if (!sawScan) return std::nullopt;
      out.push_back(std::byte{0xFF});
      out.push_back(std::byte{kEndOfImage});
      return out;  // an appended preview or clip is not part of this image
    }
    if (marker == kStartOfImage || marker == 0x00) return std::nullopt;
    if (isStandalone(marker)) {
      out.push_back(std::byte{0xFF});
      out.push_back(std::byte{marker});
      position += 2;
      continue;
    }
    if (jpeg.size() - position < 4) return std::nullopt;
    const std::size_t length = std::size_t{at(jpeg, position + 2)} << 8 | at(jpeg, position + 3);
    if (length < 2 || length > jpeg.size() - position - 2) return std::nullopt;
    const auto segment = jpeg.subspan(position, 2 + length);
    const auto payload = segment.subspan(4);
    switch (decide(marker, payload, exifKept)) {
      case Keep::whole: out.insert(out.end(), segment.begin(), segment.end()); break;
      case Keep::jfifWithoutThumbnail: {
        out.push_back(std::byte{0xFF});
        out.push_back(std::byte{kApp0});
        out.push_back(std::byte{0});
        out.push_back(std::byte{2 + kJfifFixedSize});
        out.insert(out.end(), payload.begin(), payload.begin() + kJfifFixedSize - 2);
        out.push_back(std::byte{0});  // no thumbnail: 0 × 0
        out.push_back(std::byte{0});
        break;
      }
      case Keep::drop: break;
    }
    position += segment.size();
    if (marker == kStartOfScan) {
      sawScan = true;
      const std::size_t end = endOfScanData(jpeg, position);
      out.insert(out.end(), jpeg.begin() + static_cast<std::ptrdiff_t>(position),
                 jpeg.begin() + static_cast<std::ptrdiff_t>(end));
      position = end;
    }
  }
  // The data ended inside the image: the copy ends where the source does.
  if (!sawScan) return std::nullopt;
  return out;
}

}  // namespace lumenscribe::decoder
