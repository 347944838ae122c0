// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "cleancopy/clean_copy.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <nlohmann/json.hpp>
#include <set>

#include "compare/file_comparison.h"
#include "platform/child_process.h"
#include "platform/decoder_client.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

const std::filesystem::path kData = LUMENSCRIBE_TEST_DATA_DIR;
const std::filesystem::path kFixtures = kData / "cleancopy";

std::string contentOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

nlohmann::json exiftool(const std::filesystem::path& path) {
  const auto run = platform::runChildProcess("/usr/bin/exiftool", {"-j", "-a", "-G1", "-n", path},
                                             platform::ChildOutput::stdoutOnly);
  if (!run || run->exitStatus != 0) return nlohmann::json::object();
  return nlohmann::json::parse(run->output).at(0);
}

// What exiftool finds in an image beyond how to show its pixels: for a pixel-safe copy
// nothing but the orientation may be left; a standard copy may also describe its pixels in
// the EXIF or TIFF tags that the encoder writes.
std::set<std::string> leftovers(const nlohmann::json& tags, bool standard) {
  static const std::set<std::string> kPixelGroups = {
      "SourceFile", "System",      "ExifTool", "File",      "Composite",
      "RIFF",       "JFIF",        "PNG-pHYs", "QuickTime", "Meta",
      "ICC-header", "ICC_Profile", "ICC-view", "ICC-meas",  "GIF"};
  static const std::set<std::string> kPngPixelTags = {
      "ImageWidth", "ImageHeight", "BitDepth",    "ColorType",   "Compression", "Filter",
      "Interlace",  "Gamma",       "WhitePointX", "WhitePointY", "RedX",        "RedY",
      "GreenX",     "GreenY",      "BlueX",       "BlueY"};
  static const std::set<std::string> kEncoderTags = {
      "XResolution",         "YResolution",     "ResolutionUnit",
      "YCbCrPositioning",    "ExifVersion",     "ComponentsConfiguration",
      "FlashpixVersion",     "ColorSpace",      "ExifImageWidth",
      "ExifImageHeight",     "ImageWidth",      "ImageHeight",
      "BitsPerSample",       "Compression",     "PhotometricInterpretation",
      "PlanarConfiguration", "RowsPerStrip",    "SampleFormat",
      "SamplesPerPixel",     "StripByteCounts", "StripOffsets"};
  std::set<std::string> found;
  for (const auto& [key, value] : tags.items()) {
    const std::string group = key.substr(0, key.find(':'));
    const std::string tag = key.substr(key.find(':') + 1);
    const bool allowed =
        (kPixelGroups.contains(group) && !tag.ends_with("Comment") && !tag.starts_with("GPS") &&
         !tag.starts_with("Thumbnail")) ||
        key == "IFD0:Orientation" || (group == "PNG" && kPngPixelTags.contains(tag)) ||
        (standard && (group == "IFD0" || group == "ExifIFD") && kEncoderTags.contains(tag));
    if (!allowed) found.insert(key);
  }
  return found;
}

// From the start of scan to the end of image: the entropy-coded picture.
std::string scanOf(const std::string& jpeg) {
  std::size_t at = 2;
  while (at + 4 <= jpeg.size() && static_cast<unsigned char>(jpeg[at + 1]) != 0xDA) {
    at += 2 + (static_cast<unsigned char>(jpeg[at + 2]) << 8 |
               static_cast<unsigned char>(jpeg[at + 3]));
  }
  const std::size_t end = jpeg.find("\xFF\xD9", at);
  return end == std::string::npos ? "" : jpeg.substr(at, end + 2 - at);
}

std::optional<PixelDigest> pixelsOf(const std::filesystem::path& path) {
  return pixelFingerprint(test::openedItem(path), test::sharedDecoder());
}

TEST(CleanCopy, pixelSafeCopyLeavesExiftoolOnlyTheOrientationAndTheSamePixels) {
  test::TempDir dir;
  for (const char* name : {"camera_gps_thumbnail.jpg", "text_chunks.png", "camera_gps.webp"}) {
    SCOPED_TRACE(name);
    const auto source = kFixtures / name;
    const std::string before = contentOf(source);
    const auto copy = dir.path() / name;
    const CleanCopyResult result = makePixelSafeCopy(source, copy, test::sharedDecoder());
    ASSERT_EQ(result.state, CleanCopyState::saved) << result.message << " " << result.reason;
    ASSERT_TRUE(result.check && result.check->passed() && result.check->pixelsMatch);

    const auto original = exiftool(source);
    const auto cleaned = exiftool(copy);
    EXPECT_GE(leftovers(original, false).size(), 4u) << "the fixture lost its metadata";
    EXPECT_EQ(leftovers(cleaned, false), std::set<std::string>{});
    EXPECT_EQ(cleaned["IFD0:Orientation"], original["IFD0:Orientation"]);
    EXPECT_EQ(cleaned.contains("ICC_Profile:ProfileDescription"),
              original.contains("ICC_Profile:ProfileDescription"));
    const auto originalPixels = pixelsOf(source);
    ASSERT_TRUE(originalPixels);
    EXPECT_EQ(pixelsOf(copy)->hexDigest, originalPixels->hexDigest);
    EXPECT_EQ(contentOf(source), before) << "the image itself changed";
  }
  const std::string scan = scanOf(contentOf(kFixtures / "camera_gps_thumbnail.jpg"));
  EXPECT_GT(scan.size(), 100u);
  const std::string copy = contentOf(dir.path() / "camera_gps_thumbnail.jpg");
  EXPECT_EQ(scanOf(copy), scan);
  // Nothing after the end of the image: phones append their motion clips there.
  EXPECT_TRUE(copy.ends_with(scan));
}

TEST(CleanCopy, asksBeforeReencodingWhatItCannotRewriteAndStripsTheReencodedCopy) {
  test::TempDir dir;
  for (const char* name : {"camera_gps.tif", "camera_gps.heic", "single_frame.gif"}) {
    SCOPED_TRACE(name);
    const auto copy = dir.path() / name;
    const CleanCopyResult refused =
        makePixelSafeCopy(kFixtures / name, copy, test::sharedDecoder());
    EXPECT_EQ(refused.state, CleanCopyState::pixelSafeRefused);
    EXPECT_EQ(refused.message, clean_copy_text::kQuestionMessage);
    EXPECT_FALSE(std::filesystem::exists(copy));
  }
  for (const char* name :
       {"camera_gps.tif", "camera_gps.heic", "single_frame.gif", "camera_gps_thumbnail.jpg"}) {
    SCOPED_TRACE(name);
    const auto copy = dir.path() / name;
    const CleanCopyResult result =
        makeStandardCleanCopy(kFixtures / name, copy, test::sharedDecoder());
    ASSERT_EQ(result.state, CleanCopyState::saved) << result.message << " " << result.reason;
    const auto original = exiftool(kFixtures / name);
    const auto cleaned = exiftool(copy);
    EXPECT_EQ(leftovers(cleaned, true), std::set<std::string>{});
    EXPECT_EQ(cleaned.value("IFD0:Orientation", 1), original.value("IFD0:Orientation", 1));
    EXPECT_EQ(pixelsOf(copy)->width, pixelsOf(kFixtures / name)->width);
  }
}

TEST(CleanCopy, checksTheCopyItWroteAgainstTheImage) {
  const auto check = [](const std::filesystem::path& source, const std::filesystem::path& copy) {
    return checkCleanCopy(test::openedItem(source), test::openedItem(copy),
                          CleanCopyKind::pixelSafe, test::sharedDecoder());
  };
  const auto clean = kData / "image" / "pixels_only.png";  // 96 × 64, nothing but pixels
  EXPECT_TRUE(check(clean, clean).passed());
  const CleanCopyCheck tagged = check(clean, kFixtures / "text_chunks.png");  // 96 × 64 too
  EXPECT_TRUE(tagged.sameSize);
  EXPECT_FALSE(tagged.pixelsMatch);
  EXPECT_TRUE(
      std::set<std::string>(tagged.personalProperties.begin(), tagged.personalProperties.end())
          .contains("{GPS}.Latitude"));
  EXPECT_FALSE(check(clean, kData / "health" / "intact.png").sameSize);
}

TEST(CleanCopy, isOfferedForOnePictureInAFormatItCanWrite) {
  test::TempDir dir;
  const struct {
    std::filesystem::path item;
    bool offered;
  } cases[] = {
      {kFixtures / "camera_gps_thumbnail.jpg", true},
      {kFixtures / "camera_gps.heic", true},  // through the standard copy
      {kFixtures / "single_frame.gif", true},
      {kData / "image" / "animated.gif", false},
      {kFixtures / "two_pages.tif", false},
      {kData / "health" / "unsupported.bmp", false},
      {dir.write("corrupt.jpg", "\xFF\xD8\xFF\xE0 cut"), false},
      {kData / "text" / "utf8_bom.txt", false},
      {dir.path(), false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(canMakeCleanCopy(c.item, test::sharedDecoder()), c.offered) << c.item;
  }

  const struct {
    const char* source;
    const char* type;
    const char* name;
  } names[] = {
      {"/p/photo.JPG", "image/jpeg", "photo-clean.JPG"},  // the extension as written
      {"/p/scan", "image/png", "scan-clean.png"},         // the type's own extension
      {"/p/scan", "", "scan-clean.image"},
      {"/p/holiday.2024.webp", "image/webp", "holiday.2024-clean.webp"},
      {"/p/.jpg", "image/jpeg", ".jpg-clean.jpg"},
  };
  for (const auto& n : names) {
    EXPECT_EQ(suggestedCleanCopyName(n.source, n.type), n.name) << n.source;
  }
  EXPECT_EQ(standardCopyQuality("image/heic"), 100);
  EXPECT_EQ(standardCopyQuality("image/png"), std::nullopt);
}

TEST(CleanCopy, replacesADestinationOnlyWithACompleteCheckedCopy) {
  test::TempDir dir;
  const auto existing = dir.write("copy.jpg", "the file that was here");
  const auto inodeOf = [](const std::filesystem::path& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
  };
  const auto before = inodeOf(existing);
  auto& decoder = test::sharedDecoder();
  EXPECT_EQ(makePixelSafeCopy(kFixtures / "camera_gps.tif", existing, decoder).state,
            CleanCopyState::pixelSafeRefused);
  EXPECT_EQ(makePixelSafeCopy(kFixtures / "two_pages.tif", existing, decoder).message,
            clean_copy_text::kPrepareFailed);
  EXPECT_EQ(contentOf(existing), "the file that was here");

  // The image is never the copy's destination, even through a link.
  const auto image = dir.write("image.jpg", contentOf(kFixtures / "camera_gps_thumbnail.jpg"));
  std::filesystem::create_symlink(image, dir.path() / "link.jpg");
  EXPECT_EQ(makePixelSafeCopy(image, dir.path() / "link.jpg", decoder).message,
            clean_copy_text::kDestinationFailed);
  EXPECT_EQ(contentOf(image), contentOf(kFixtures / "camera_gps_thumbnail.jpg"));

  EXPECT_EQ(makePixelSafeCopy(image, existing, decoder).state, CleanCopyState::saved);
  EXPECT_NE(inodeOf(existing), before) << "written over in place, not renamed into place";
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(dir.path())) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"copy.jpg", "image.jpg", "link.jpg"}));
}

}  // namespace
}  // namespace lumenscribe
