// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/image_status.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <thread>
#include <vector>

#include "decoder/picture_preview.h"
#include "decoder_test_support.h"

namespace lumenscribe::decoder {
namespace {

using test::kHealthFixtures;
using test::OpenFixture;

struct Case {
  const char* file;
  ImageDecodeStatus status;
};

constexpr Case kCases[] = {
    {"intact.jpg", ImageDecodeStatus::complete},
    {"scan_data_overwritten.jpg", ImageDecodeStatus::invalidData},
    {"truncated_at_50_percent.jpg", ImageDecodeStatus::incomplete},
    {"truncated_in_header.jpg", ImageDecodeStatus::headerTruncated},
    {"cut_short.png", ImageDecodeStatus::incomplete},
    {"broken_idat_crc.png", ImageDecodeStatus::invalidData},
    {"truncated.webp", ImageDecodeStatus::headerTruncated},
    {"unsupported.bmp", ImageDecodeStatus::noLoader},
    {"photo.jpg", ImageDecodeStatus::noLoader},
    {"one_page.pdf", ImageDecodeStatus::noLoader},  // the PDF loader is not one we allow
};

std::size_t openDescriptors() {
  return static_cast<std::size_t>(std::distance(
      std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator()));
}

TEST(ImageStatus, sameVerdictEveryTimeFromManyThreadsAtOnce) {
  std::vector<std::thread> threads;
  std::vector<std::vector<ImageDecodeStatus>> seen(3);
  for (std::size_t t = 0; t < seen.size(); ++t) {
    threads.emplace_back([&, t] {
      for (int round = 0; round < 3; ++round) {
        for (const Case& c : kCases) {
          seen[t].push_back(decodeImageStatus(OpenFixture(kHealthFixtures / c.file).bytes()));
        }
      }
    });
  }
  for (auto& thread : threads) thread.join();
  for (const auto& statuses : seen) {
    ASSERT_EQ(statuses.size(), 3 * std::size(kCases));
    for (std::size_t i = 0; i < statuses.size(); ++i) {
      EXPECT_EQ(statuses[i], kCases[i % std::size(kCases)].status)
          << kCases[i % std::size(kCases)].file;
    }
  }
}

TEST(ImageStatus, readsOnlyTheBytesTheItemHadAndNeverMovesItsPosition) {
  // A whole JPEG, but the item says it ended at half its size: exactly what a file that
  // grew after it was opened looks like, seen from the other side.
  const OpenFixture intact(kHealthFixtures / "intact.jpg");
  ASSERT_TRUE(intact.fd);
  EXPECT_EQ(decodeImageStatus({intact.fd.get(), intact.size / 2}), ImageDecodeStatus::incomplete);
  EXPECT_EQ(::lseek(intact.fd.get(), 0, SEEK_CUR), 0);
  EXPECT_EQ(decodeImageStatus(intact.bytes()), ImageDecodeStatus::complete);
}

TEST(ImageStatus, noDescriptorOutlivesACheck) {
  decodeImageStatus(OpenFixture(kHealthFixtures / "intact.jpg").bytes());  // libvips' start-up
  const std::size_t before = openDescriptors();
  for (const Case& c : kCases) decodeImageStatus(OpenFixture(kHealthFixtures / c.file).bytes());
  EXPECT_EQ(openDescriptors(), before);
}

TEST(PicturePreview, fitsTheBoxKeepsTheAspectAndComesAsRgba) {
  const OpenFixture photo(kHealthFixtures / "intact.jpg");
  const auto preview = renderPicturePreview(photo.bytes(), {64, 64});
  ASSERT_TRUE(preview);
  EXPECT_TRUE(preview->width == 64 || preview->height == 64);
  EXPECT_LE(preview->width, 64);
  EXPECT_LE(preview->height, 64);
  EXPECT_EQ(preview->pixels.size(), static_cast<std::size_t>(preview->width) * preview->height * 4);
  // Opaque: the alpha of every pixel is full.
  for (std::size_t i = 3; i < preview->pixels.size(); i += 4) ASSERT_EQ(preview->pixels[i], 255);

  // Formats no allowed loader reads have no preview; nothing is guessed.
  EXPECT_FALSE(
      renderPicturePreview(OpenFixture(kHealthFixtures / "unsupported.bmp").bytes(), {64, 64}));
  EXPECT_FALSE(
      renderPicturePreview(OpenFixture(kHealthFixtures / "one_page.pdf").bytes(), {64, 64}));
}

}  // namespace
}  // namespace lumenscribe::decoder
