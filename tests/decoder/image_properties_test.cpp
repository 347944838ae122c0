// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/image_properties.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "decoder/exif_properties.h"
#include "decoder/image_status.h"
#include "decoder_test_support.h"
#include "test_files.h"

namespace lumenscribe::decoder {
namespace {

using Map = MetadataValue::Map;
using nlohmann::json;
using test::OpenFixture;

const std::filesystem::path kImages = std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "image";

std::optional<ImageProperties> propertiesOf(const std::filesystem::path& path) {
  return readImageProperties(OpenFixture(path).bytes());
}

const Map& dictionaryOf(const Map& properties, const std::string& key) {
  static const Map empty;
  const auto found = properties.find(key);
  const Map* map = found != properties.end() ? found->second.get<Map>() : nullptr;
  return map != nullptr ? *map : empty;
}

// ---- exiftool as the oracle ----------------------------------------------------------

struct Dictionary {
  const char* ours;
  const char* exiftoolGroup;
  // Our key -> exiftool's tag name, where they differ.
  std::map<std::string, std::string> renamed;
};

const Dictionary kDictionaries[] = {
    {"{Exif}",
     "ExifIFD",
     {{"ExposureBiasValue", "ExposureCompensation"},
      {"ISOSpeedRatings", "ISO"},
      {"FocalLenIn35mmFilm", "FocalLengthIn35mmFormat"},
      {"PixelXDimension", "ExifImageWidth"},
      {"PixelYDimension", "ExifImageHeight"},
      {"DateTimeDigitized", "CreateDate"},
      {"BodySerialNumber", "SerialNumber"},
      {"FlashPixVersion", "FlashpixVersion"},
      {"SubsecTimeOriginal", "SubSecTimeOriginal"},
      {"LensSpecification", "LensInfo"},
      {"CameraOwnerName", "OwnerName"}}},
    {"{TIFF}", "IFD0", {{"ImageLength", "ImageHeight"}, {"DateTime", "ModifyDate"}}},
    {"{GPS}", "GPS", {{"GPSVersion", "GPSVersionID"}}},
    {"{IPTC}",
     "IPTC",
     {{"Byline", "By-line"},
      {"Copyright", "CopyrightNotice"},
      {"RecordVersion", "ApplicationRecordVersion"}}},
    {"{PNG}", "PNG", {}},
};

std::string exiftoolName(const Dictionary& dictionary, const std::string& key) {
  if (const auto renamed = dictionary.renamed.find(key); renamed != dictionary.renamed.end()) {
    return renamed->second;
  }
  return std::string(dictionary.ours) == "{GPS}" ? "GPS" + key : key;
}

std::optional<double> numberIn(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

bool sameNumber(double ours, double theirs) {
  // exiftool prints ten significant digits.
  return std::abs(ours - theirs) <= 1e-8 * std::max(1.0, std::abs(theirs));
}

bool agreesWithText(const MetadataValue& ours, const std::string& theirs) {
  if (const auto* mine = ours.get<std::string>()) {
    // Longer texts are cut at the protocol's limit.
    return *mine == theirs ||
           (mine->size() == platform::decoder::kMaxPropertyText && theirs.starts_with(*mine));
  }
  const auto number = numberIn(theirs);
  const auto mine = metadataDouble(ours);
  return number && mine && sameNumber(*mine, *number);
}

// exiftool writes a list of numbers as its elements joined by spaces, a repeated tag as a
// JSON array, a number as a number (or as text when its JSON writer takes it for text), and
// text as it is.
bool agrees(const MetadataValue& ours, const json& theirs) {
  if (const auto* array = ours.get<MetadataValue::Array>()) {
    std::vector<std::string> parts;
    if (theirs.is_array()) {
      for (const auto& element : theirs) {
        parts.push_back(element.is_string() ? element.get<std::string>() : element.dump());
      }
    } else if (theirs.is_string() && array->size() != 1) {
      std::istringstream words(theirs.get<std::string>());
      for (std::string word; words >> word;) parts.push_back(word);
    } else {
      parts.push_back(theirs.is_string() ? theirs.get<std::string>() : theirs.dump());
    }
    if (parts.size() != array->size()) return false;
    for (std::size_t i = 0; i < parts.size(); ++i) {
      if (!agreesWithText((*array)[i], parts[i])) return false;
    }
    return true;
  }
  if (theirs.is_number()) {
    const auto number = metadataDouble(ours);
    return number && sameNumber(*number, theirs.get<double>());
  }
  return theirs.is_string() && agreesWithText(ours, theirs.get<std::string>());
}

json exiftoolReadings() {
  std::ifstream in(kImages / "exiftool.json");
  return json::parse(in);
}

// exiftool tags we leave out on purpose: where the strips are, the PNG header (its facts
// are the top-level ones), and what has no number.
const std::set<std::string> kNotCarried = {
    "IFD0:StripOffsets", "IFD0:StripByteCounts", "PNG:ImageWidth", "PNG:ImageHeight",
    "PNG:BitDepth", "PNG:ColorType", "PNG:Compression", "PNG:Filter", "PNG:Interlace",
    // exiftool's empty text for a latitude whose seconds have a zero denominator.
    "gps_zero_denominator.jpg GPS:GPSLatitude"};

TEST(ImageProperties, everyValueAgreesWithExiftoolAndNothingExiftoolReadsIsMissing) {
  int compared = 0;
  for (const json& reading : exiftoolReadings()) {
    const std::string file = reading["SourceFile"];
    SCOPED_TRACE(file);
    const auto image = propertiesOf(kImages / file);
    ASSERT_TRUE(image);
    for (const Dictionary& dictionary : kDictionaries) {
      const Map& ours = dictionaryOf(image->properties, dictionary.ours);
      std::set<std::string> theirsSeen;
      for (const auto& [key, value] : ours) {
        const std::string tag =
            std::string(dictionary.exiftoolGroup) + ":" + exiftoolName(dictionary, key);
        if (!reading.contains(tag)) continue;
        theirsSeen.insert(tag);
        EXPECT_TRUE(agrees(value, reading[tag]))
            << tag << ": ours " << metadataValueText(value) << ", exiftool " << reading[tag];
        ++compared;
      }
      for (const auto& [tag, value] : reading.items()) {
        if (!tag.starts_with(std::string(dictionary.exiftoolGroup) + ":")) continue;
        if (theirsSeen.contains(tag) || kNotCarried.contains(tag) ||
            kNotCarried.contains(file + " " + tag)) {
          continue;
        }
        ADD_FAILURE() << "exiftool reads " << tag << " = " << value << "; we do not";
      }
    }
    // The top-level facts.
    const auto& size = reading["Composite:ImageSize"];
    EXPECT_EQ(metadataValueText(image->properties.at("PixelWidth")) + " " +
                  metadataValueText(image->properties.at("PixelHeight")),
              size.get<std::string>());
    for (const char* depth : {"File:BitsPerSample", "PNG:BitDepth"}) {
      if (reading.contains(depth)) {
        EXPECT_TRUE(agrees(image->properties.at("Depth"), reading[depth]));
      }
    }
    if (reading.contains("ICC_Profile:ProfileDescription")) {
      EXPECT_TRUE(
          agrees(image->properties.at("ProfileName"), reading["ICC_Profile:ProfileDescription"]));
    }
    if (reading.contains("IFD0:Orientation")) {
      EXPECT_TRUE(agrees(image->properties.at("Orientation"), reading["IFD0:Orientation"]));
    }
  }
  EXPECT_GT(compared, 250);
}

std::string textAt(const Map& properties, const std::string& path) {
  // "{GPS}.Latitude" or "Depth"
  const std::size_t dot = path.find('.');
  if (dot == std::string::npos) {
    const auto found = properties.find(path);
    return found != properties.end() ? metadataValueText(found->second) : "<absent>";
  }
  const Map& inner = dictionaryOf(properties, path.substr(0, dot));
  const auto found = inner.find(path.substr(dot + 1));
  return found != inner.end() ? metadataValueText(found->second) : "<absent>";
}

TEST(ImageProperties, pixelFactsColourAndTheFormatsOwnDictionaries) {
  struct Case {
    const char* file;
    std::int32_t count;
    std::vector<std::pair<std::string, std::string>> expected;
  };
  // Values that exiftool also reads are compared with it above; these are the rest: the
  // top-level facts, XMP, GIF, and what must not be there.
  const Case cases[] = {
      {"camera_gps_south_west.jpg",
       1,
       {{"ColorModel", "RGB"},
        {"Orientation", "6"},
        {"DPIWidth", "300"},
        {"ProfileName", "<absent>"},
        {"{XMP}.dc:creator", "Test Photographer"},
        {"{XMP}.xmp:CreatorTool", "Lumenscribe Fixture Maker 2.1"}}},
      {"icc_profile.jpg", 1, {{"ProfileName", "sP3C"}}},
      {"grayscale.jpg", 1, {{"ColorModel", "Gray"}, {"Depth", "8"}, {"DPIWidth", "72"}}},
      {"cmyk.jpg", 1, {{"ColorModel", "CMYK"}, {"DPIWidth", "25.4"}}},
      {"depth16.png", 1, {{"Depth", "16"}, {"ColorModel", "RGB"}, {"DPIWidth", "<absent>"}}},
      {"pixels_only.png",
       1,
       {{"PixelWidth", "96"}, {"Orientation", "<absent>"}, {"{TIFF}", "<absent>"}}},
      {"animated.gif",
       3,
       {{"PixelWidth", "32"}, {"{GIF}.LoopCount", "0"}, {"{GIF}.DelayTime", "0.2"}}},
      // Exiv2 finds no EXIF here; libvips' copy of it is read instead.
      {"exif_added_later.heic", 1, {{"{TIFF}.Model", "FX-heic-later"}, {"PixelWidth", "96"}}},
      // EXIF that no tool writes.
      {"exif_truncated.jpg", 1, {{"PixelWidth", "96"}, {"{Exif}", "<absent>"}}},
      {"exif_ifd_offset_past_end.jpg", 1, {{"{Exif}", "<absent>"}}},
      {"gps_zero_denominator.jpg", 1, {{"{GPS}.Latitude", "<absent>"}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    const auto image = propertiesOf(kImages / c.file);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->imageCount, c.count);
    for (const auto& [path, expected] : c.expected) {
      EXPECT_EQ(textAt(image->properties, path), expected) << path;
    }
  }
  // Numbers stay numbers and the single ISO value is still a list.
  const auto photo = propertiesOf(kImages / "camera_gps_south_west.jpg");
  const Map& exif = dictionaryOf(photo->properties, "{Exif}");
  EXPECT_TRUE(exif.at("FNumber").get<double>());
  EXPECT_TRUE(exif.at("ExposureProgram").get<std::int64_t>());
  EXPECT_EQ(exif.at("ISOSpeedRatings"), MetadataValue(MetadataValue::Array{200}));
}

TEST(ImageProperties, aHugeDescriptionIsCutToWholeCharactersWithinTheLimit) {
  const auto image = propertiesOf(kImages / "huge_description.tif");
  ASSERT_TRUE(image);
  const auto* description =
      dictionaryOf(image->properties, "{TIFF}").at("ImageDescription").get<std::string>();
  ASSERT_TRUE(description);
  EXPECT_EQ(description->size(), platform::decoder::kMaxPropertyText);
  EXPECT_EQ(propertyText(std::string(platform::decoder::kMaxPropertyText - 1, 'a') + "é"),
            std::string(platform::decoder::kMaxPropertyText - 1, 'a'));
  EXPECT_EQ(propertyText("Caf\xE9\0junk"), "Café");  // Latin-1, cut at the NUL
}

TEST(ImageProperties, everyMapTheWorkerBuildsPassesTheEnginesChecks) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(kImages)) files.push_back(entry);
  const std::filesystem::path corpus = LUMENSCRIBE_CORPUS_DIR;
  if (std::filesystem::is_directory(corpus)) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(corpus)) {
      if (entry.is_regular_file()) files.push_back(entry);
    }
  }
  int images = 0;
  for (const auto& file : files) {
    const auto image = propertiesOf(file);
    platform::decoder::Writer out;
    platform::decoder::write(out, image);
    platform::decoder::Reader in(out.data());
    const auto read = platform::decoder::readImageProperties(in);
    ASSERT_TRUE(read && in.finished()) << file;
    EXPECT_EQ(*read, image) << file;
    images += image.has_value();
  }
  EXPECT_GT(images, 20);
}

TEST(ImageProperties, notAPictureGivesNothing) {
  lumenscribe::test::TempDir dir;
  const std::filesystem::path health = test::kHealthFixtures;
  for (const auto& file :
       {dir.write("notes.jpg", "Plain words.\n"), dir.write("empty.png", ""),
        health / "one_page.pdf", health / "intact.zip", dir.write("xmp.jpg", "<x:xmpmeta/>")}) {
    EXPECT_FALSE(propertiesOf(file)) << file;
  }
}

TEST(ImageProperties, anExifBlockAsLibvipsKeepsItIsReadWithOrWithoutItsHeader) {
  // The EXIF segment of a JPEG, as libvips hands it over: "Exif\0\0" and the TIFF block.
  std::ifstream in(kImages / "gps_only.jpg", std::ios::binary);
  const std::string jpeg((std::istreambuf_iterator<char>(in)), {});
  const std::size_t start = jpeg.find("Exif");
  ASSERT_NE(start, std::string::npos);
  const std::size_t length = static_cast<unsigned char>(jpeg[start - 2]) * 256 +
                             static_cast<unsigned char>(jpeg[start - 1]) - 2;
  const auto block = std::as_bytes(std::span(jpeg).subspan(start, length));
  for (const auto& bytes : {block, block.subspan(6)}) {
    Exiv2Reading reading;
    PropertyBudget budget(1000);
    addExifBlock(bytes, reading, budget);
    ASSERT_TRUE(reading.dictionaries.contains("{GPS}"));
    EXPECT_EQ(reading.dictionaries.at("{GPS}").at("LatitudeRef"), MetadataValue("N"));
  }
  Exiv2Reading nothing;
  PropertyBudget budget(1000);
  addExifBlock(block.subspan(0, 10), nothing, budget);
  addExifBlock({}, nothing, budget);
  EXPECT_TRUE(nothing.dictionaries.empty());
}

TEST(ImageProperties, libvipsStartsWithItsHeifModuleAndNoOther) {
  ASSERT_TRUE(initialiseVips());
  std::ifstream maps("/proc/self/maps");
  const std::string mapped((std::istreambuf_iterator<char>(maps)), {});
  for (const char* blocked : {"vips-magick", "vips-openslide", "vips-poppler", "vips-jxl"}) {
    EXPECT_EQ(mapped.find(blocked), std::string::npos) << blocked;
  }
  const auto heic = propertiesOf(kImages / "photo.heic");
  ASSERT_TRUE(heic);
  // The colour model comes from libvips alone: its HEIF loader read the header.
  EXPECT_EQ(heic->properties.at("ColorModel"), MetadataValue("RGB"));
}

}  // namespace
}  // namespace lumenscribe::decoder
