// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/image_pass.h"

#include <gtest/gtest.h>

#include "test_files.h"

namespace lumenscribe {
namespace {

using Map = MetadataValue::Map;
using test::titlesOf;
using Titles = std::vector<std::string>;

const std::filesystem::path kImages = test::kData / "image";

ImageMetadataGroups groupsWith(bool image, bool camera, bool location, bool creator) {
  ImageMetadataGroups groups;
  if (image) groups.imageRows.emplace_back("Width", "1 pixels");
  if (camera) groups.cameraRows.emplace_back("Make", "Maker");
  if (location) groups.locationRows.emplace_back("GPS Date", "2024:01:01");
  if (creator) groups.creatorRows.emplace_back("Artist", "");
  groups.rawMetadata = {{"Shared Key", "from the image"}, {"Pixel Width", "1"}};
  return groups;
}

TEST(ImagePass, sectionsFindingsAndRawEntriesComeInTheirFixedOrder) {
  Accumulators accumulators;
  accumulators.sections.emplace_back("File", "doc.fill", std::vector<InsightRow>{});
  accumulators.summaryItems.emplace_back("File Health");
  accumulators.findings.emplace_back("Earlier finding", "", PrivacyLevel::sensitive);
  accumulators.setRaw("Shared Key", "from an earlier step");

  addImageMetadata(groupsWith(true, true, true, true), accumulators);
  EXPECT_EQ(titlesOf(accumulators.sections),
            (Titles{"File", "Image", "Camera", "Location", "Software & Creator"}));
  EXPECT_EQ(accumulators.summaryItems,
            (Titles{"File Health", "Image", "Camera", "Location", "Software & Creator"}));
  EXPECT_EQ(titlesOf(accumulators.findings),
            (Titles{"Earlier finding", "Location data is embedded", "Creation history is visible",
                    "Camera details are visible"}));
  for (std::size_t i = 1; i < accumulators.findings.size(); ++i) {
    EXPECT_EQ(accumulators.findings[i].level, PrivacyLevel::notice);
  }
  EXPECT_EQ(accumulators.rawMetadata.at("Shared Key"), "from the image");
  EXPECT_EQ(accumulators.sections[2].rows.front().label, "Make");
}

TEST(ImagePass, eachFindingRestsOnItsGroupAlone) {
  struct Case {
    ImageMetadataGroups groups;
    Titles sections;
    Titles findings;
  };
  const Case cases[] = {
      {groupsWith(true, false, false, false), {"Image"}, {}},
      {groupsWith(false, true, false, false), {"Camera"}, {"Camera details are visible"}},
      {groupsWith(false, false, true, false), {"Location"}, {"Location data is embedded"}},
      {groupsWith(false, false, false, true),
       {"Software & Creator"},
       {"Creation history is visible"}},
      {groupsWith(false, false, false, false), {}, {}},
  };
  for (const Case& c : cases) {
    Accumulators accumulators;
    addImageMetadata(c.groups, accumulators);
    EXPECT_EQ(titlesOf(accumulators.sections), c.sections);
    EXPECT_EQ(titlesOf(accumulators.findings), c.findings);
    EXPECT_EQ(accumulators.rawMetadata.at("Pixel Width"), "1");
  }
  Accumulators nothing;
  addImagePass(std::nullopt, nothing);
  EXPECT_TRUE(nothing.sections.empty() && nothing.rawMetadata.empty() && nothing.findings.empty());
}

TEST(ImagePass, readsThePropertyMapOfAnyPictureWhateverItsName) {
  auto& decoder = test::sharedDecoder();
  const auto photo =
      readImagePropertyMap(test::openedItem(kImages / "camera_gps_south_west.jpg"), decoder);
  ASSERT_TRUE(photo);
  EXPECT_EQ(photo->at("{GPS}").get<Map>()->at("LatitudeRef"), MetadataValue("S"));

  // A PNG named .jpg is read as the PNG it is.
  const auto renamed = readImagePropertyMap(test::openedItem(kImages / "png_named.jpg"), decoder);
  ASSERT_TRUE(renamed);
  EXPECT_EQ(renamed->at("PixelWidth"), MetadataValue(96));
  EXPECT_EQ(renamed->at("{TIFF}").get<Map>()->at("Model"), MetadataValue("FX-PNG"));

  test::TempDir dir;
  const auto notes = dir.write("notes.jpg", "Just words, not a picture.\n");
  const auto empty = dir.write("empty.png", "");
  const auto crash = dir.write("crash.jpg", "LUMENSCRIBE TEST: CRASH THE DECODER\n");
  for (const auto& nothing : {notes, empty, crash, dir.path()}) {
    EXPECT_FALSE(readImagePropertyMap(test::openedItem(nothing), decoder)) << nothing;
  }
}

TEST(ImagePass, startsNoDecoderForFilesThatCannotBePictures) {
  platform::DecoderClient decoder;
  test::TempDir dir;
  const std::filesystem::path health = test::kData / "health";
  for (const auto& file :
       {dir.write("notes.jpg", "Just words.\n"), health / "one_page.pdf", health / "intact.zip"}) {
    EXPECT_FALSE(readImagePropertyMap(test::openedItem(file), decoder)) << file;
  }
  EXPECT_TRUE(decoder.workerPids().empty());
  // Anything else may be a picture: an unknown binary is asked about.
  const auto unknown = dir.write("blob", std::string("\x01\x02\x03\x04\x05\x06\x07\x08", 8));
  EXPECT_FALSE(readImagePropertyMap(test::openedItem(unknown), decoder));
  EXPECT_EQ(decoder.workerPids().size(), 1u);
}

}  // namespace
}  // namespace lumenscribe
