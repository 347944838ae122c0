// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/pixel_fingerprint.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>

#include "decoder/image_status.h"
#include "decoder_test_support.h"
#include "platform/sha256.h"
#include "test_files.h"

namespace lumenscribe::decoder {
namespace {

using test::OpenFixture;

const std::filesystem::path kData = LUMENSCRIBE_TEST_DATA_DIR;

std::optional<PixelFingerprint> fingerprintOf(const std::filesystem::path& path) {
  return computePixelFingerprint(OpenFixture(path).bytes());
}

TEST(PixelFingerprint, premultipliesEachColourByItsAlphaRoundingToNearest) {
  const struct {
    std::array<std::uint8_t, 4> in;
    std::array<std::uint8_t, 4> out;
  } cases[] = {
      {{10, 20, 30, 255}, {10, 20, 30, 255}},        // opaque: unchanged
      {{255, 0, 0, 0}, {0, 0, 0, 0}},                // transparent: no colour at all
      {{255, 255, 255, 128}, {128, 128, 128, 128}},  // 255 × 128 / 255
      {{200, 100, 50, 1}, {1, 0, 0, 1}},             // 200 / 255 rounds up, 100 / 255 down
      {{101, 3, 254, 64}, {25, 1, 64, 64}},
  };
  for (const auto& test : cases) {
    auto pixel = test.in;
    premultiplyRow(pixel);
    EXPECT_EQ(pixel, test.out) << int(test.in[0]) << " " << int(test.in[3]);
  }
}

// The digest is SHA-256 of R, G, B, A bytes, rows top to bottom: for an opaque sRGB picture
// without a profile, its pixels with alpha 255.
TEST(PixelFingerprint, hashesTheRgbaRowsOfImageZero) {
  const auto path = kData / "image" / "pixels_only.png";
  ASSERT_TRUE(initialiseVips());
  VipsImage* loaded = vips_image_new_from_file(path.c_str(), nullptr);
  ASSERT_NE(loaded, nullptr);
  ImagePtr image(loaded);
  VipsImage* rgba = nullptr;
  ASSERT_EQ(vips_bandjoin_const1(image.get(), &rgba, 255.0, nullptr), 0);
  ImagePtr withAlpha(rgba);
  std::size_t size = 0;
  const std::unique_ptr<void, decltype(&g_free)> memory(
      vips_image_write_to_memory(withAlpha.get(), &size), &g_free);
  ASSERT_EQ(size, 96u * 64 * 4);
  platform::Sha256 sha;
  sha.update({static_cast<const std::byte*>(memory.get()), size});

  const auto fingerprint = fingerprintOf(path);
  ASSERT_TRUE(fingerprint);
  EXPECT_EQ(fingerprint->width, 96);
  EXPECT_EQ(fingerprint->height, 64);
  const auto expected = sha.finish();
  ASSERT_TRUE(expected);
  EXPECT_TRUE(std::equal(expected->begin(), expected->end(), fingerprint->digest.begin()));
}

TEST(PixelFingerprint, seesNoColourWhereNothingIsDrawn) {
  const auto red = fingerprintOf(kData / "cleancopy" / "transparent_red.png");
  const auto blue = fingerprintOf(kData / "cleancopy" / "transparent_blue.png");
  ASSERT_TRUE(red && blue);
  EXPECT_EQ(*red, *blue);
  EXPECT_NE(*red, *fingerprintOf(kData / "image" / "pixels_only.png"));
  // Metadata is not pixels: the same picture with and without EXIF and text chunks.
  EXPECT_EQ(*fingerprintOf(kData / "image" / "pixels_only.png"),
            *fingerprintOf(kData / "image" / "png_with_exif.png"));
}

TEST(PixelFingerprint, givesNothingForWhatDoesNotDecode) {
  lumenscribe::test::TempDir dir;
  const auto corrupt = dir.write("corrupt.png", "\x89PNG\r\n\x1a\nnot really a picture");
  const auto empty = dir.write("empty.png", "");
  for (const auto& path :
       {corrupt, empty, kData / "text" / "utf8_bom.txt", kData / "health" / "unsupported.bmp"}) {
    EXPECT_FALSE(fingerprintOf(path)) << path;
  }
}

}  // namespace
}  // namespace lumenscribe::decoder
