// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "core/metadata_value.h"
#include "lumenscribe/result.h"

namespace lumenscribe {

/// What the image property map of a picture says, as the rows of its four sections and the
/// raw entries it adds.
struct ImageMetadataGroups {
  std::vector<InsightRow> imageRows;     // geometry and colour: "Image"
  std::vector<InsightRow> cameraRows;    // exposure, lens and body: "Camera"
  std::vector<InsightRow> locationRows;  // GPS: "Location"
  std::vector<InsightRow> creatorRows;   // software, artist, copyright: "Software & Creator"
  RawMetadata rawMetadata;
};

/// Turns an image property map (top-level "PixelWidth", "ColorModel", ... and the dictionaries
/// "{Exif}", "{TIFF}" and "{GPS}") into row groups, and every property into a raw entry under
/// its dotted key path ("{Exif}.FNumber"). Pure and total: a missing key or a value of an
/// unexpected type only removes rows or falls back to the value's text.
///
///     auto groups = analyzeImageProperties({{"PixelWidth", 640}, {"PixelHeight", 480}});
///     // groups.imageRows: "Width" "640 pixels", "Height" "480 pixels"
ImageMetadataGroups analyzeImageProperties(const MetadataValue::Map& properties);

/// "1/125 sec" for 0.008, "2 sec" for 2, the text + " sec" for anything else.
std::string shutterText(const MetadataValue& exposureTime);
/// The coordinate signed by its reference ("S" and "W" are negative), six decimals and a
/// degree sign: "-37.774900°".
std::string gpsCoordinateText(const MetadataValue& coordinate, const MetadataValue& reference);
/// "+0.33 EV", "-1 EV", "0 EV".
std::string exposureBiasText(const MetadataValue& bias);
/// "None" for 0, else "2×", "1.5×".
std::string digitalZoomText(const MetadataValue& ratio);
/// "Fired · auto · red-eye reduction" and the like, from the EXIF flash bits.
std::string flashText(const MetadataValue& flash);
/// "12.5 m (41 ft)".
std::string altitudeText(const MetadataValue& altitude);

/// Every entry of `map` under `prefix` ("" at the top level, else "prefix.key"), descending
/// into maps but not arrays; a later entry of the same key replaces the earlier one.
void flattenProperties(const MetadataValue::Map& map, const std::string& prefix, RawMetadata& raw);

}  // namespace lumenscribe
