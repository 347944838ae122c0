// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/formatters.h"

#include <gtest/gtest.h>

namespace lumenscribe {
namespace {

TEST(ByteCountText, writesDecimalUnitsWithTheirOwnPrecision) {
  const std::vector<std::pair<std::int64_t, std::string>> cases = {
      {0, "Zero KB"},
      {1, "1 byte"},
      {2, "2 bytes"},
      {999, "999 bytes"},
      {1000, "1 KB"},
      {1499, "1 KB"},
      {1500, "2 KB"},  // half away from zero
      {999'499, "999 KB"},
      {999'500, "1 MB"},  // 1000 KB is written in the next unit
      {1'000'000, "1 MB"},
      {1'050'000, "1.1 MB"},
      {1'500'000, "1.5 MB"},
      {1'048'576, "1 MB"},
      {999'950'000, "1 GB"},
      {1'234'567'890, "1.23 GB"},
      {1'200'000'000, "1.2 GB"},
      {1'050'000'000, "1.05 GB"},  // decimals that start with a zero keep it
      {1'004'999'999, "1 GB"},
      {2'010'000'000'000, "2.01 TB"},
      {4'294'967'296, "4.29 GB"},
      {1'000'000'000'000, "1 TB"},
      {2'500'000'000'000'000, "2.5 PB"},
      {9'223'372'036'854'775'807, "9223.37 PB"},
      {-1500, "-2 KB"},
  };
  for (const auto& [bytes, text] : cases) EXPECT_EQ(byteCountText(bytes), text) << bytes;
}

TEST(MediumDateText, followsTheLocaleStyleInTheSystemZone) {
  // The tests run with LC_ALL=C and TZ=UTC, which read as en_US in UTC.
  const Timestamp date = std::chrono::sys_days{std::chrono::November / 22 / 2026} +
                         std::chrono::hours(22) + std::chrono::minutes(39) +
                         std::chrono::seconds(28);
  EXPECT_EQ(mediumDateText(date), "Nov 22, 2026, 10:39:28\u202FPM");
}

}  // namespace
}  // namespace lumenscribe
