// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/metadata_value.h"

namespace lumenscribe::decoder {

/// Settles Exiv2 once for the whole process: its XMP toolkit started, HEIF/AVIF read as
/// images (not as QuickTime movies without EXIF) and its log muted.
void initialiseExiv2();

/// Keeps a property map within the protocol's node limit: each value taken counts once.
class PropertyBudget {
 public:
  explicit PropertyBudget(std::size_t nodes) : left_(nodes) {}
  /// True, and the nodes counted, when `nodes` more still fit.
  bool take(std::size_t nodes) {
    if (nodes > left_) return false;
    left_ -= nodes;
    return true;
  }

 private:
  std::size_t left_;
};

/// What Exiv2 reads from one file, as property dictionaries keyed the way the engine reads
/// them: "{Exif}" (the EXIF IFD), "{TIFF}" (IFD0), "{GPS}" (decimal degrees, letters as
/// references), "{IPTC}", "{XMP}" ("dc:creator") and "{MakerNote}" (one dictionary per
/// maker-note group). Empty dictionaries are left out.
struct Exiv2Reading {
  /// Exiv2 knows the format as one that holds a picture (not a sidecar, movie or EPS).
  bool isImage = false;
  std::int64_t pixelWidth = 0;
  std::int64_t pixelHeight = 0;
  /// The embedded ICC profile, when Exiv2 found one.
  std::vector<std::byte> iccProfile;
  /// "{Exif}", "{TIFF}", ... to their entries.
  std::map<std::string, MetadataValue::Map> dictionaries;

  bool hasExif() const;
};

/// Reads the metadata of a whole file held in memory (never from a path). Exiv2's exceptions
/// and log never escape: what it cannot read is left out.
Exiv2Reading readWithExiv2(std::span<const char> file, PropertyBudget& budget);

/// Adds the EXIF of a bare EXIF block ("Exif\0\0" and a TIFF header, or the TIFF header
/// alone, as libvips keeps it) to `reading`, for files whose EXIF Exiv2 does not find itself.
void addExifBlock(std::span<const std::byte> block, Exiv2Reading& reading, PropertyBudget& budget);

/// Appends one Unicode code point to UTF-8 text.
void appendCodePoint(std::string& text, std::uint32_t code);

/// `raw` cut at its first NUL, read as UTF-8 or else as Latin-1, and kept within the
/// protocol's text limit (cut at a character boundary).
std::string propertyText(std::string_view raw);

}  // namespace lumenscribe::decoder
