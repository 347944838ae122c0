// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/image_metadata.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <utility>

#include "analyzers/image_metadata_tables.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

using Map = MetadataValue::Map;
using Array = MetadataValue::Array;
using test::Lines;
using test::lines;

TEST(ImageMetadata, everyFormatterAndCodeTable) {
  using Formatter = std::function<std::string(const MetadataValue&)>;
  using Pairs = std::vector<std::pair<MetadataValue, std::string>>;
  const std::tuple<const char*, Formatter, Pairs> cases[] = {
      {"shutter",
       shutterText,
       {{0.008, "1/125 sec"},
        {0.3, "1/3 sec"},
        {2, "2 sec"},
        {1, "1 sec"},
        {0, "0 sec"},
        {2.5, "2.5 sec"},
        {-0.5, "-0.5 sec"},
        {"abc", "abc sec"},
        {"0.004", "1/250 sec"},
        // Past 64 bits the reciprocal is still written out.
        {1e-20, "1/100000000000000000000 sec"}}},
      {"ev",
       exposureBiasText,
       {{-0.3333, "-0.33 EV"}, {0.7, "+0.7 EV"}, {0, "0 EV"}, {"n/a", "n/a"}}},
      {"zoom", digitalZoomText, {{0, "None"}, {2, "2×"}, {"3", "3×"}, {"wide", "wide"}}},
      {"flash",
       flashText,
       {{0, "Did not fire"},
        {16, "Did not fire · suppressed"},
        {25, "Fired · auto"},
        {9, "Fired · forced"},
        {89, "Fired · auto · red-eye reduction"},
        {38, "Did not fire"},  // bits 1, 2 and 5 say nothing here
        {"x", "x"}}},
      {"altitude",
       altitudeText,
       {{35.5, "35.5 m (116 ft)"},
        {12.5, "12.5 m (41 ft)"},
        {"high", "0 m (0 ft)"},
        {1e30, "1000000000000000019884624838656 m (3280840000000000149444326588416 ft)"}}},
      {"program", exposureProgramText, {{3, "Aperture priority"}, {9, "9"}, {"2", "Program AE"}}},
      {"mode", exposureModeText, {{3, "3"}}},
      // 2.9 is truncated to 2.
      {"metering", meteringModeText, {{9, "9"}, {2.9, "Center-weighted average"}}},
      {"white balance", whiteBalanceText, {{1, "Manual"}, {"auto", "auto"}}},
      {"scene", sceneCaptureTypeText, {{3, "Night scene"}}},
      {"colour space", colorSpaceText, {{65535, "Uncalibrated"}, {2, "2"}}},
  };
  for (const auto& [name, format, pairs] : cases) {
    for (const auto& [value, expected] : pairs) {
      EXPECT_EQ(format(value), expected) << name << " of " << metadataValueText(value);
    }
  }
}

TEST(ImageMetadata, gpsCoordinatesAreSignedByTheirReference) {
  struct Case {
    MetadataValue coordinate;
    MetadataValue reference;
    std::string expected;
  };
  const Case cases[] = {
      {48.8584, "n", "48.858400°"}, {48.8584, "s", "-48.858400°"}, {37.7749, "S", "-37.774900°"},
      {2.2945, "W", "-2.294500°"},  {2.2945, "E", "2.294500°"},    {2.2945, "", "2.294500°"},
      {0, "S", "0.000000°"},        {"12.5", "N", "12.500000°"},   {"north", "N", "0.000000°"},
      {2.2945, "ſ", "-2.294500°"},  // ſ upper-cases to S
  };
  for (const Case& c : cases) {
    EXPECT_EQ(gpsCoordinateText(c.coordinate, c.reference), c.expected)
        << metadataValueText(c.coordinate) << " " << metadataValueText(c.reference);
  }
}

TEST(ImageMetadata, pixelSizeAloneGivesTwoImageRowsAndNothingElse) {
  const auto groups = analyzeImageProperties({{"PixelWidth", 640}, {"PixelHeight", 480}});
  EXPECT_EQ(lines(groups.imageRows), (Lines{"Width: 640 pixels", "Height: 480 pixels"}));
  EXPECT_TRUE(groups.cameraRows.empty());
  EXPECT_TRUE(groups.locationRows.empty());
  EXPECT_TRUE(groups.creatorRows.empty());
  EXPECT_EQ(test::block(groups.rawMetadata),
            "Pixel Height: 480\nPixel Width: 640\nPixelHeight: 480\nPixelWidth: 640\n");
}

TEST(ImageMetadata, aCameraPhotoGivesEveryRowInItsOrder) {
  const Map photo = {
      {"Orientation", 6},
      {"DPIHeight", 72},
      {"DPIWidth", 72.5},
      {"ProfileName", "Display P3"},
      {"ColorModel", "RGB"},
      {"Depth", 8},
      {"PixelHeight", 3024},
      {"PixelWidth", 4032},
      {"{Exif}", Map{{"PixelYDimension", 3024},
                     {"PixelXDimension", 4032},
                     {"ImageUniqueID", "ABC123"},
                     {"BodySerialNumber", "B-1"},
                     {"LensSerialNumber", "L-2"},
                     {"LensMake", ""},
                     {"ColorSpace", 65535},
                     {"SceneCaptureType", 0},
                     {"DigitalZoomRatio", 0},
                     {"FocalLenIn35mmFilm", 26},
                     {"Flash", 16},
                     {"WhiteBalance", 0},
                     {"MeteringMode", 9},
                     {"ExposureBiasValue", 0.7},
                     {"ExposureMode", 0},
                     {"ExposureProgram", 2},
                     {"LensModel", ""},
                     {"DateTimeOriginal", "2024:06:01 19:42:10"},
                     {"FocalLength", 4.25},
                     {"ISOSpeedRatings", Array{100, 200}},
                     {"FNumber", 2.8},
                     {"ExposureTime", 0.008},
                     {"SubsecTimeOriginal", "25"}}},
      {"{TIFF}", Map{{"Copyright", "(c) Someone"},
                     {"Artist", ""},
                     {"Software", "Editor 2"},
                     {"Model", "Phone 15"},
                     {"Make", "Maker"},
                     {"Orientation", 6}}},
      {"{GPS}", Map{{"Latitude", 22.951916},
                    {"LatitudeRef", "S"},
                    {"Longitude", 43.210487},
                    {"LongitudeRef", "W"},
                    {"Altitude", 700.5},
                    {"AltitudeRef", 1},
                    {"DateStamp", "2024:06:01"},
                    {"TimeStamp", "22:42:10"}}},
  };
  const auto groups = analyzeImageProperties(photo);
  EXPECT_EQ(test::block(groups.imageRows),
            "Width: 4032 pixels\nHeight: 3024 pixels\nBit Depth: 8\nColor Model: RGB\n"
            "Color Profile: Display P3\nOrientation: 6\nHorizontal DPI: 72.5\nVertical DPI: 72\n");
  // A direct row is there even when empty (Lens); a formatted one is not (Lens Make).
  EXPECT_EQ(test::block(groups.cameraRows),
            "Shutter: 1/125 sec\nAperture: ƒ/2.8\nISO: 100, 200\nFocal Length: 4.25 mm\n"
            "Captured: 2024:06:01 19:42:10\nLens: \nExposure Program: Program AE\n"
            "Exposure Mode: Auto exposure\nExposure Compensation: +0.7 EV\nMetering Mode: 9\n"
            "White Balance: Auto\nFlash: Did not fire · suppressed\n35mm Equivalent: 26 mm\n"
            "Digital Zoom: None\nScene Type: Standard\nEXIF Color Space: Uncalibrated\n"
            "Lens Serial Number: L-2\nBody Serial Number: B-1\nImage Unique ID: ABC123\n"
            "Recorded Width: 4032 pixels\nRecorded Height: 3024 pixels\nMake: Maker\n"
            "Camera: Phone 15\n");
  EXPECT_EQ(test::block(groups.locationRows),
            "Latitude: -22.951916°\nLongitude: -43.210487°\nAltitude: 700.5 m (2298 ft)\n"
            "GPS Date: 2024:06:01\n");
  EXPECT_EQ(test::block(groups.creatorRows),
            "Software: Editor 2\nArtist: \nCopyright: (c) Someone\n");

  // Raw entries keep the numbers the rows format, and every property under its dotted key
  // path; arrays are not descended into.
  for (const char* entry :
       {"Pixel Width: 4032", "EXIF Exposure Time: 0.008", "EXIF ISO: 100, 200",
        "EXIF ExposureBiasValue: 0.7", "EXIF Flash: 16", "TIFF Artist: ", "GPS Latitude: 22.9519",
        "GPS Latitude Ref: S", "GPS Altitude Feet: 2298 ft", "{Exif}.ISOSpeedRatings: 100, 200",
        "{Exif}.SubsecTimeOriginal: 25", "{GPS}.AltitudeRef: 1"}) {
    const Lines raw = lines(groups.rawMetadata);
    EXPECT_NE(std::find(raw.begin(), raw.end(), entry), raw.end()) << entry;
  }
  // A formatted row that said nothing leaves no raw entry of its own.
  EXPECT_FALSE(groups.rawMetadata.contains("EXIF LensMake"));
  EXPECT_EQ(groups.rawMetadata.at("{Exif}.LensMake"), "");
}

TEST(ImageMetadata, rowsNeedTheirWholeKeyAndDictionariesOfTheRightType) {
  struct Case {
    const char* what;
    Map properties;
    Lines rows;  // camera, location and creator rows
  };
  const Case cases[] = {
      {"a latitude without its reference", {{"{GPS}", Map{{"Latitude", 48.8584}}}}, {}},
      {"GPS alone", {{"{GPS}", Map{{"DateStamp", "2024:01:01"}}}}, {"GPS Date: 2024:01:01"}},
      {"dictionaries that are not dictionaries",
       {{"{Exif}", "FNumber 2.8"}, {"{TIFF}", Array{"Make"}}, {"{GPS}", 1}},
       {}},
      {"the same formatted text twice stays once",
       {{"{Exif}", Map{{"LensMake", "Acme"}, {"LensSerialNumber", "Acme"}}}},
       {"Lens Make: Acme", "Lens Serial Number: Acme"}},
      {"text where numbers belong",
       {{"{Exif}", Map{{"ExposureTime", "abc"}, {"FNumber", "f2.8"}, {"Flash", "x"}}}},
       {"Shutter: abc sec", "Aperture: ƒ/f2.8", "Flash: x"}},
      {"a number where text belongs", {{"{TIFF}", Map{{"Make", 42}}}}, {"Make: 42"}},
  };
  for (const Case& c : cases) {
    const auto groups = analyzeImageProperties(c.properties);
    Lines rows = lines(groups.cameraRows);
    for (const auto* group : {&groups.locationRows, &groups.creatorRows}) {
      for (const std::string& line : lines(*group)) rows.push_back(line);
    }
    EXPECT_EQ(rows, c.rows) << c.what;
    EXPECT_TRUE(groups.imageRows.empty()) << c.what;
  }
  const auto noReference = analyzeImageProperties({{"{GPS}", Map{{"Latitude", 48.8584}}}});
  EXPECT_FALSE(noReference.rawMetadata.contains("GPS Latitude"));
  EXPECT_EQ(noReference.rawMetadata.at("{GPS}.Latitude"), "48.8584");
}

TEST(ImageMetadata, flatteningJoinsKeysWithFullStops) {
  RawMetadata raw{{"{Exif}.FNumber", "earlier"}, {"Other", "kept"}};
  flattenProperties({{"{Exif}", Map{{"FNumber", 2.8}, {"Inner", Map{{"Deep", "yes"}}}}},
                     {"List", Array{Map{{"Not", "descended"}}, 1}},
                     {"Empty", Map{}}},
                    "", raw);
  EXPECT_EQ(raw, (RawMetadata{{"{Exif}.FNumber", "2.8"},
                              {"{Exif}.Inner.Deep", "yes"},
                              {"List", "{Not: descended}, 1"},
                              {"Other", "kept"}}));
}

}  // namespace
}  // namespace lumenscribe
