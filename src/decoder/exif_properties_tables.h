// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

// How Exiv2's tag names become the keys of the property dictionaries.
namespace lumenscribe::decoder {

/// The key of an EXIF-IFD tag in "{Exif}": Exiv2's name, except where the dictionary spells
/// it otherwise ("FocalLengthIn35mmFilm" is "FocalLenIn35mmFilm").
std::string_view exifKeyFor(std::string_view exiv2Name);

/// The key of a GPS tag in "{GPS}": the name without its "GPS" ("Latitude", "DateStamp");
/// the version is "GPSVersion".
std::string gpsKeyFor(std::string_view exiv2Name);

/// IFD0 tags that locate or carry data rather than say something: strip and tile offsets,
/// the pointers to other IFDs, and the XMP, IPTC and ICC blocks that are read on their own.
bool isStructuralTiffTag(std::string_view exiv2Name);

/// EXIF-IFD tags left out: the maker note (read by its groups), the pointer to the interop
/// IFD, and the sensor's colour filter layout, a table of no interest to a reader.
bool isUnreadExifTag(std::string_view exiv2Name);

/// Text tags that cameras pad with blanks when they have nothing to say (Make, Model,
/// Software, Artist, the sub-second times), read without their trailing blanks.
bool isBlankFilledTag(std::string_view exiv2Name);

/// "Undefined" EXIF tags that hold four ASCII digits ("0232").
bool isVersionTag(std::string_view exiv2Name);

/// EXIF tags in APEX units (ShutterSpeedValue, ApertureValue, MaxApertureValue), which the
/// dictionaries hold as seconds and f-numbers.
bool isApexTag(std::string_view exiv2Name);

/// Windows' UTF-16 text tags of IFD0 (XPAuthor, XPComment, ...).
bool isWindowsTextTag(std::string_view exiv2Name);

}  // namespace lumenscribe::decoder
