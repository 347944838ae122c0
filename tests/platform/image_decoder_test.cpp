// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/image_decoder.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "test_files.h"

namespace lumenscribe::platform {
namespace {

const std::filesystem::path kFixtures = std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health";

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
    {"unsupported.bmp", ImageDecodeStatus::unknownImageType},
    {"photo.jpg", ImageDecodeStatus::noImage},
    {"one_page.pdf", ImageDecodeStatus::noImage},  // the PDF loader is not one we allow
};

std::size_t openDescriptors() {
  return static_cast<std::size_t>(std::distance(
      std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator()));
}

TEST(ImageDecoder, sameVerdictEveryTimeFromManyThreadsAtOnce) {
  std::vector<std::thread> threads;
  std::vector<std::vector<ImageDecodeStatus>> seen(4);
  for (std::size_t t = 0; t < seen.size(); ++t) {
    threads.emplace_back([&, t] {
      for (int round = 0; round < 5; ++round) {
        for (const Case& c : kCases) seen[t].push_back(decodeImageStatus(kFixtures / c.file));
      }
    });
  }
  for (auto& thread : threads) thread.join();
  for (const auto& statuses : seen) {
    ASSERT_EQ(statuses.size(), 5 * std::size(kCases));
    for (std::size_t i = 0; i < statuses.size(); ++i) {
      EXPECT_EQ(statuses[i], kCases[i % std::size(kCases)].status)
          << kCases[i % std::size(kCases)].file;
    }
  }
}

TEST(ImageDecoder, unopenableFilesAreSaidSoAndNoDescriptorOutlivesACheck) {
  test::TempDir dir;
  EXPECT_EQ(decodeImageStatus(dir.path() / "missing.jpg"), ImageDecodeStatus::cannotOpen);
  EXPECT_EQ(decodeImageStatus(dir.path()), ImageDecodeStatus::cannotOpen);

  decodeImageStatus(kFixtures / "intact.jpg");  // libvips' own start-up may keep some
  const std::size_t before = openDescriptors();
  for (const Case& c : kCases) decodeImageStatus(kFixtures / c.file);
  EXPECT_EQ(openDescriptors(), before);
}

}  // namespace
}  // namespace lumenscribe::platform
