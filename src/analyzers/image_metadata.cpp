// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/image_metadata.h"

#include <cmath>
#include <cstdio>
#include <string_view>

#include "analyzers/image_metadata_tables.h"
#include "platform/unicode_text.h"

namespace lumenscribe {

namespace {

using Map = MetadataValue::Map;
using Format = std::string (*)(const MetadataValue&);

std::string text(const MetadataValue& value) { return metadataValueText(value); }

const Map* dictionaryAt(const Map& properties, std::string_view key) {
  const auto found = properties.find(std::string(key));
  return found != properties.end() ? found->second.get<Map>() : nullptr;
}

const MetadataValue* valueAt(const Map& map, std::string_view key) {
  const auto found = map.find(std::string(key));
  return found != map.end() ? &found->second : nullptr;
}

struct ImageRow {
  std::string_view key;
  std::string_view label;
  Format format;
  std::string_view rawKey;
};

constexpr ImageRow kImageRows[] = {
    {"PixelWidth", "Width", [](const MetadataValue& v) { return text(v) + " pixels"; },
     "Pixel Width"},
    {"PixelHeight", "Height", [](const MetadataValue& v) { return text(v) + " pixels"; },
     "Pixel Height"},
    {"Depth", "Bit Depth", text, "Bit Depth"},
    {"ColorModel", "Color Model", text, "Color Model"},
    {"ProfileName", "Color Profile", text, "Color Profile"},
    {"Orientation", "Orientation", text, "Orientation"},
    {"DPIWidth", "Horizontal DPI", text, "Horizontal DPI"},
    {"DPIHeight", "Vertical DPI", text, "Vertical DPI"},
};

// Direct rows are appended whenever their tag is present; formatted rows only when the
// formatter has something to say, and only once with the same text.
enum class Handling { direct, formatted };

struct CameraRow {
  std::string_view tag;
  Handling handling;
  std::string_view label;
  Format format;
  std::string_view rawKey;
};

std::string isoText(const MetadataValue& value) {
  std::string iso = text(value);
  std::erase(iso, '[');
  std::erase(iso, ']');
  return iso;
}

std::string millimetres(const MetadataValue& value) { return text(value) + " mm"; }
std::string pixels(const MetadataValue& value) { return text(value) + " pixels"; }

constexpr CameraRow kExifRows[] = {
    {"ExposureTime", Handling::direct, "Shutter", shutterText, "EXIF Exposure Time"},
    {"FNumber", Handling::direct, "Aperture", [](const MetadataValue& v) { return "ƒ/" + text(v); },
     "EXIF F-Number"},
    {"ISOSpeedRatings", Handling::direct, "ISO", isoText, "EXIF ISO"},
    {"FocalLength", Handling::direct, "Focal Length", millimetres, "EXIF Focal Length"},
    {"DateTimeOriginal", Handling::direct, "Captured", text, "EXIF Original Date"},
    {"LensModel", Handling::direct, "Lens", text, "EXIF Lens Model"},
    {"ExposureProgram", Handling::formatted, "Exposure Program", exposureProgramText,
     "EXIF ExposureProgram"},
    {"ExposureMode", Handling::formatted, "Exposure Mode", exposureModeText, "EXIF ExposureMode"},
    {"ExposureBiasValue", Handling::formatted, "Exposure Compensation", exposureBiasText,
     "EXIF ExposureBiasValue"},
    {"MeteringMode", Handling::formatted, "Metering Mode", meteringModeText, "EXIF MeteringMode"},
    {"WhiteBalance", Handling::formatted, "White Balance", whiteBalanceText, "EXIF WhiteBalance"},
    {"Flash", Handling::formatted, "Flash", flashText, "EXIF Flash"},
    {"FocalLenIn35mmFilm", Handling::formatted, "35mm Equivalent", millimetres,
     "EXIF FocalLenIn35mmFilm"},
    {"DigitalZoomRatio", Handling::formatted, "Digital Zoom", digitalZoomText,
     "EXIF DigitalZoomRatio"},
    {"SceneCaptureType", Handling::formatted, "Scene Type", sceneCaptureTypeText,
     "EXIF SceneCaptureType"},
    {"ColorSpace", Handling::formatted, "EXIF Color Space", colorSpaceText, "EXIF ColorSpace"},
    {"LensMake", Handling::formatted, "Lens Make", text, "EXIF LensMake"},
    {"LensSerialNumber", Handling::formatted, "Lens Serial Number", text, "EXIF LensSerialNumber"},
    {"BodySerialNumber", Handling::formatted, "Body Serial Number", text, "EXIF BodySerialNumber"},
    {"ImageUniqueID", Handling::formatted, "Image Unique ID", text, "EXIF ImageUniqueID"},
    {"PixelXDimension", Handling::formatted, "Recorded Width", pixels, "EXIF PixelXDimension"},
    {"PixelYDimension", Handling::formatted, "Recorded Height", pixels, "EXIF PixelYDimension"},
};

enum class Group { camera, creator };

struct TiffRow {
  std::string_view tag;
  Group group;
  std::string_view label;
  std::string_view rawKey;
};

constexpr TiffRow kTiffRows[] = {
    {"Make", Group::camera, "Make", "TIFF Make"},
    {"Model", Group::camera, "Camera", "TIFF Model"},
    {"Software", Group::creator, "Software", "TIFF Software"},
    {"Artist", Group::creator, "Artist", "TIFF Artist"},
    {"Copyright", Group::creator, "Copyright", "TIFF Copyright"},
};

void setRaw(ImageMetadataGroups& groups, std::string_view key, std::string value) {
  groups.rawMetadata.insert_or_assign(std::string(key), std::move(value));
}

void addExifRows(const Map& exif, ImageMetadataGroups& groups) {
  for (const CameraRow& row : kExifRows) {
    const MetadataValue* value = valueAt(exif, row.tag);
    if (value == nullptr) continue;
    std::string shown = row.format(*value);
    if (row.handling == Handling::direct) {
      groups.cameraRows.emplace_back(std::string(row.label), std::move(shown));
    } else if (shown.empty()) {
      continue;
    } else {
      appendRowIfNew(groups.cameraRows, std::string(row.label), std::move(shown));
    }
    setRaw(groups, row.rawKey, text(*value));
  }
}

void addTiffRows(const Map& tiff, ImageMetadataGroups& groups) {
  for (const TiffRow& row : kTiffRows) {
    const MetadataValue* value = valueAt(tiff, row.tag);
    if (value == nullptr) continue;
    auto& rows = row.group == Group::camera ? groups.cameraRows : groups.creatorRows;
    rows.emplace_back(std::string(row.label), text(*value));
    setRaw(groups, row.rawKey, text(*value));
  }
}

void addCoordinateRow(const Map& gps, std::string_view key, std::string_view referenceKey,
                      std::string_view label, ImageMetadataGroups& groups) {
  const MetadataValue* coordinate = valueAt(gps, key);
  const MetadataValue* reference = valueAt(gps, referenceKey);
  if (coordinate == nullptr || reference == nullptr) return;
  groups.locationRows.emplace_back(std::string(label), gpsCoordinateText(*coordinate, *reference));
  setRaw(groups, "GPS " + std::string(label), text(*coordinate));
  setRaw(groups, "GPS " + std::string(label) + " Ref", text(*reference));
}

// Rounded half away from zero, as whole-number text however large (or not finite) it is.
std::string roundedText(double number) { return compactNumberText(std::round(number)); }

double feetOf(const MetadataValue& altitude) {
  return metadataDouble(altitude).value_or(0) * 3.28084;
}

void addGpsRows(const Map& gps, ImageMetadataGroups& groups) {
  addCoordinateRow(gps, "Latitude", "LatitudeRef", "Latitude", groups);
  addCoordinateRow(gps, "Longitude", "LongitudeRef", "Longitude", groups);
  if (const MetadataValue* altitude = valueAt(gps, "Altitude")) {
    groups.locationRows.emplace_back("Altitude", altitudeText(*altitude));
    setRaw(groups, "GPS Altitude", text(*altitude));
    setRaw(groups, "GPS Altitude Feet", roundedText(feetOf(*altitude)) + " ft");
  }
  if (const MetadataValue* date = valueAt(gps, "DateStamp")) {
    groups.locationRows.emplace_back("GPS Date", text(*date));
    setRaw(groups, "GPS Date", text(*date));
  }
}

}  // namespace

std::string shutterText(const MetadataValue& exposureTime) {
  const auto seconds = metadataDouble(exposureTime);
  if (seconds && *seconds > 0 && *seconds < 1) return "1/" + roundedText(1 / *seconds) + " sec";
  return text(exposureTime) + " sec";
}

std::string gpsCoordinateText(const MetadataValue& coordinate, const MetadataValue& reference) {
  const std::string hemisphere = platform::upperCased(text(reference));
  const double sign = hemisphere == "S" || hemisphere == "W" ? -1 : 1;
  // Adding zero turns -0 into 0: a position on the equator has no hemisphere.
  const double degrees = sign * metadataDouble(coordinate).value_or(0) + 0.0;
  char buffer[512];
  std::snprintf(buffer, sizeof buffer, "%.6f°", degrees);
  return buffer;
}

std::string exposureBiasText(const MetadataValue& bias) {
  const auto value = metadataDouble(bias);
  if (!value) return text(bias);
  std::string shown = compactNumberText(*value) + " EV";
  if (*value > 0) shown.insert(shown.begin(), '+');
  return shown;
}

std::string digitalZoomText(const MetadataValue& ratio) {
  const auto zoom = metadataDouble(ratio);
  if (!zoom) return text(ratio);
  if (*zoom == 0) return "None";
  return compactNumberText(*zoom) + "×";
}

std::string flashText(const MetadataValue& flash) {
  const auto bits = metadataInt(flash);
  if (!bits) return text(flash);
  std::string shown = (*bits & 1) != 0 ? "Fired" : "Did not fire";
  switch ((*bits >> 3) & 3) {
    case 1: shown += " · forced"; break;
    case 2: shown += " · suppressed"; break;
    case 3: shown += " · auto"; break;
    default: break;
  }
  if ((*bits & 0x40) != 0) shown += " · red-eye reduction";
  return shown;
}

std::string altitudeText(const MetadataValue& altitude) {
  const double metres = metadataDouble(altitude).value_or(0);
  return compactNumberText(metres) + " m (" + roundedText(feetOf(altitude)) + " ft)";
}

void flattenProperties(const Map& map, const std::string& prefix, RawMetadata& raw) {
  for (const auto& [key, value] : map) {
    std::string path = prefix.empty() ? key : prefix + "." + key;
    if (const Map* nested = value.get<Map>()) {
      flattenProperties(*nested, path, raw);
    } else {
      raw.insert_or_assign(std::move(path), text(value));
    }
  }
}

ImageMetadataGroups analyzeImageProperties(const Map& properties) {
  ImageMetadataGroups groups;
  for (const ImageRow& row : kImageRows) {
    const MetadataValue* value = valueAt(properties, row.key);
    if (value == nullptr) continue;
    groups.imageRows.emplace_back(std::string(row.label), row.format(*value));
    setRaw(groups, row.rawKey, text(*value));
  }
  if (const Map* exif = dictionaryAt(properties, "{Exif}")) addExifRows(*exif, groups);
  if (const Map* tiff = dictionaryAt(properties, "{TIFF}")) addTiffRows(*tiff, groups);
  if (const Map* gps = dictionaryAt(properties, "{GPS}")) addGpsRows(*gps, groups);
  flattenProperties(properties, "", groups.rawMetadata);
  return groups;
}

}  // namespace lumenscribe
