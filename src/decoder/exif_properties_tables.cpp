// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/exif_properties_tables.h"

#include <algorithm>
#include <array>
#include <utility>

namespace lumenscribe::decoder {

namespace {

using namespace std::string_view_literals;

//                       Exiv2's name                  the dictionary's key
constexpr std::array kExifRenames = {
    std::pair{"FocalLengthIn35mmFilm"sv, "FocalLenIn35mmFilm"sv},
    std::pair{"SubSecTime"sv, "SubsecTime"sv},
    std::pair{"SubSecTimeOriginal"sv, "SubsecTimeOriginal"sv},
    std::pair{"SubSecTimeDigitized"sv, "SubsecTimeDigitized"sv},
    std::pair{"FlashpixVersion"sv, "FlashPixVersion"sv},
    std::pair{"SubjectDistanceRange"sv, "SubjectDistRange"sv},
};

constexpr std::array kStructuralTiffTags = {
    "ExifTag"sv,
    "GPSTag"sv,
    "InteroperabilityTag"sv,
    "SubIFDs"sv,
    "StripOffsets"sv,
    "StripByteCounts"sv,
    "TileOffsets"sv,
    "TileByteCounts"sv,
    "JPEGInterchangeFormat"sv,
    "JPEGInterchangeFormatLength"sv,
    "JPEGTables"sv,
    "XMLPacket"sv,
    "IPTCNAA"sv,
    "ImageResources"sv,
    "InterColorProfile"sv,
    "PrintImageMatching"sv,
    "DNGPrivateData"sv,
    "FreeOffsets"sv,
    "FreeByteCounts"sv,
    "GrayResponseCurve"sv,
    "TransferFunction"sv,
    "ColorMap"sv,
    "MakerNote"sv,
};

constexpr std::array kUnreadExifTags = {"MakerNote"sv, "InteroperabilityTag"sv, "CFAPattern"sv};

constexpr std::array kBlankFilledTags = {"Make"sv,
                                         "Model"sv,
                                         "Software"sv,
                                         "Artist"sv,
                                         "SubSecTime"sv,
                                         "SubSecTimeOriginal"sv,
                                         "SubSecTimeDigitized"sv};

constexpr std::array kVersionTags = {"ExifVersion"sv, "FlashpixVersion"sv,
                                     "InteroperabilityVersion"sv};

constexpr std::array kApexTags = {"ShutterSpeedValue"sv, "ApertureValue"sv, "MaxApertureValue"sv};

constexpr std::array kWindowsTextTags = {"XPTitle"sv, "XPComment"sv, "XPAuthor"sv, "XPKeywords"sv,
                                         "XPSubject"sv};

template <class Table>
bool contains(const Table& table, std::string_view name) {
  return std::find(table.begin(), table.end(), name) != table.end();
}

}  // namespace

std::string_view exifKeyFor(std::string_view exiv2Name) {
  for (const auto& [from, to] : kExifRenames) {
    if (from == exiv2Name) return to;
  }
  return exiv2Name;
}

std::string gpsKeyFor(std::string_view exiv2Name) {
  if (exiv2Name == "GPSVersionID") return "GPSVersion";
  if (exiv2Name.starts_with("GPS") && exiv2Name.size() > 3) exiv2Name.remove_prefix(3);
  return std::string(exiv2Name);
}

bool isStructuralTiffTag(std::string_view exiv2Name) {
  return contains(kStructuralTiffTags, exiv2Name);
}

bool isUnreadExifTag(std::string_view exiv2Name) { return contains(kUnreadExifTags, exiv2Name); }

bool isBlankFilledTag(std::string_view exiv2Name) { return contains(kBlankFilledTags, exiv2Name); }

bool isVersionTag(std::string_view exiv2Name) { return contains(kVersionTags, exiv2Name); }

bool isApexTag(std::string_view exiv2Name) { return contains(kApexTags, exiv2Name); }

bool isWindowsTextTag(std::string_view exiv2Name) { return contains(kWindowsTextTags, exiv2Name); }

}  // namespace lumenscribe::decoder
