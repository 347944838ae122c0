// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "cleancopy/copy_check.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace lumenscribe {

namespace {

using Map = MetadataValue::Map;

// Dictionaries that hold nothing but what someone said about the picture or where it was.
constexpr std::array<std::string_view, 5> kPersonalDictionaries = {"{GPS}", "{IPTC}", "{XMP}",
                                                                   "{MakerNote}", "{PNG}"};

// What an encoder writes about the pixels themselves (libvips writes these into every JPEG
// it makes); any other EXIF entry is about the camera, the moment or the person.
constexpr std::array<std::string_view, 7> kPixelExif = {
    "ColorSpace",  "PixelXDimension", "PixelYDimension",
    "ExifVersion", "FlashPixVersion", "ComponentsConfiguration",
    "Gamma"};

constexpr std::array<std::string_view, 27> kPixelTiff = {
    "Orientation",         "XResolution",
    "YResolution",         "ResolutionUnit",
    "YCbCrPositioning",    "YCbCrSubSampling",
    "YCbCrCoefficients",   "ReferenceBlackWhite",
    "Compression",         "PhotometricInterpretation",
    "ImageWidth",          "ImageLength",
    "BitsPerSample",       "SamplesPerPixel",
    "PlanarConfiguration", "RowsPerStrip",
    "SampleFormat",        "ExtraSamples",
    "Predictor",           "FillOrder",
    "TileWidth",           "TileLength",
    "WhitePoint",          "PrimaryChromaticities",
    "NewSubfileType",      "SubfileType",
    "Threshholding"};

template <std::size_t N>
bool contains(const std::array<std::string_view, N>& table, std::string_view key) {
  return std::find(table.begin(), table.end(), key) != table.end();
}

const Map* dictionary(const Map& properties, std::string_view key) {
  const auto found = properties.find(std::string(key));
  return found != properties.end() ? found->second.get<Map>() : nullptr;
}

template <class Keep>
void collect(const Map& properties, std::string_view name, Keep isPixelFact,
             std::vector<std::string>& found) {
  const Map* entries = dictionary(properties, name);
  if (entries == nullptr) return;
  for (const auto& [key, value] : *entries) {
    if (!isPixelFact(key)) found.push_back(std::string(name) + "." + key);
  }
}

}  // namespace

std::vector<std::string> personalProperties(const MetadataValue::Map& properties) {
  std::vector<std::string> found;
  for (const std::string_view name : kPersonalDictionaries) {
    collect(
        properties, name, [](const std::string&) { return false; }, found);
  }
  collect(
      properties, "{Exif}", [](const std::string& key) { return contains(kPixelExif, key); },
      found);
  collect(
      properties, "{TIFF}", [](const std::string& key) { return contains(kPixelTiff, key); },
      found);
  return found;
}

std::string propertyListText(const std::vector<std::string>& keys) {
  constexpr std::size_t kShown = 3;
  std::string text;
  for (std::size_t i = 0; i < keys.size() && i < kShown; ++i) {
    if (i > 0) text += ", ";
    text += keys[i];
  }
  if (keys.size() > kShown) text += " and " + std::to_string(keys.size() - kShown) + " more";
  return text;
}

}  // namespace lumenscribe
