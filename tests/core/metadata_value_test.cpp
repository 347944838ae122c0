// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "core/metadata_value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lumenscribe {
namespace {

TEST(MetadataValueText, writesNumbersTrimmedAndArraysJoined) {
  using Array = MetadataValue::Array;
  const std::vector<std::pair<MetadataValue, std::string>> cases = {
      {MetadataValue("Canon"), "Canon"},
      {MetadataValue(2.8), "2.8"},
      {MetadataValue(2.0), "2"},
      {MetadataValue(-3.0), "-3"},
      {MetadataValue(0.5), "0.5"},
      {MetadataValue(0.00001), "0"},
      {MetadataValue(-0.00001), "-0"},  // "-0.0000" trimmed, sign and all
      {MetadataValue(-0.0), "0"},
      {MetadataValue(1.23456), "1.2346"},
      {MetadataValue(std::int64_t{12}), "12"},
      {MetadataValue(Array{MetadataValue(1), MetadataValue(2.5), MetadataValue("x")}), "1, 2.5, x"},
      {MetadataValue(Array{}), ""},
      {MetadataValue(Array{MetadataValue(Array{MetadataValue(1), MetadataValue(2)})}), "1, 2"},
      {MetadataValue(1e30), "1000000000000000019884624838656"},
      // Past 64-bit integers the zeros are digits, not decimals to trim.
      {MetadataValue(1e20), "100000000000000000000"},
      {MetadataValue(-5e19), "-50000000000000000000"},
      {MetadataValue(std::numeric_limits<double>::infinity()), "inf"},
      {MetadataValue(Timestamp{}), "1970-01-01 00:00:00 +0000"},
      {MetadataValue(MetadataValue::Other{"<opaque>"}), "<opaque>"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(metadataValueText(value), text);
}

TEST(CompactNumberText, keepsTwoDecimalsAtMost) {
  EXPECT_EQ(compactNumberText(1.0 / 3.0), "0.33");
  EXPECT_EQ(compactNumberText(-2.0 / 3.0), "-0.67");
  EXPECT_EQ(compactNumberText(1.5), "1.5");
  EXPECT_EQ(compactNumberText(44100), "44100");
  EXPECT_EQ(compactNumberText(0.001), "0");
  EXPECT_EQ(compactNumberText(-0.001), "-0");
  EXPECT_EQ(compactNumberText(std::nan("")), "nan");
}

TEST(MetadataNumbers, parseOnlyWhatIsWhollyANumber) {
  EXPECT_EQ(metadataInt(MetadataValue("+12")), 12);
  EXPECT_EQ(metadataInt(MetadataValue("-12")), -12);
  EXPECT_EQ(metadataInt(MetadataValue("12a")), std::nullopt);
  EXPECT_EQ(metadataInt(MetadataValue("")), std::nullopt);
  EXPECT_EQ(metadataInt(MetadataValue("-")), std::nullopt);
  EXPECT_EQ(metadataInt(MetadataValue(" 1")), std::nullopt);
  EXPECT_EQ(metadataInt(MetadataValue("9223372036854775807")),
            std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(metadataInt(MetadataValue("-9223372036854775808")),
            std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(metadataInt(MetadataValue("9223372036854775808")), std::nullopt);
  EXPECT_EQ(metadataInt(MetadataValue(-2.9)), -2);
  EXPECT_EQ(metadataInt(MetadataValue(1e300)), std::nullopt);
  EXPECT_EQ(metadataInt(MetadataValue(MetadataValue::Array{})), std::nullopt);

  EXPECT_EQ(metadataDouble(MetadataValue("2.5")), 2.5);
  EXPECT_EQ(metadataDouble(MetadataValue("+2.5")), 2.5);
  EXPECT_EQ(metadataDouble(MetadataValue(std::int64_t{7})), 7.0);
  EXPECT_EQ(metadataDouble(MetadataValue("2.5 mm")), std::nullopt);
  EXPECT_EQ(metadataDouble(MetadataValue("+-2.5")), std::nullopt);
  EXPECT_EQ(metadataDouble(MetadataValue("")), std::nullopt);
}

TEST(AppendRowIfNew, dropsOnlyExactRepeats) {
  std::vector<InsightRow> rows;
  appendRowIfNew(rows, "Make", "Canon");
  appendRowIfNew(rows, "Make", "Canon");
  EXPECT_EQ(rows.size(), 1u);
  appendRowIfNew(rows, "Make", "Nikon");
  appendRowIfNew(rows, "Model", "Canon");
  EXPECT_EQ(rows.size(), 3u);
}

TEST(DurationText, roundsToWholeSecondsAndSwitchesToHours) {
  EXPECT_EQ(durationText(0), "0:00");
  EXPECT_EQ(durationText(59.5), "1:00");
  EXPECT_EQ(durationText(3599.4), "59:59");
  EXPECT_EQ(durationText(3600), "1:00:00");
  EXPECT_EQ(durationText(36000 + 61), "10:01:01");
  EXPECT_EQ(durationText(1e16), "2777777777777:46:40");
  EXPECT_EQ(durationText(-1), "Unknown");
  EXPECT_EQ(durationText(std::numeric_limits<double>::infinity()), "Unknown");
  EXPECT_EQ(durationText(std::nan("")), "Unknown");
}

TEST(FourCharCodeText, spellsPrintableCodesOnly) {
  EXPECT_EQ(fourCharCodeText(0x6C70636D), "lpcm");
  EXPECT_EQ(fourCharCodeText(0x61616320), "aac ");
  EXPECT_EQ(fourCharCodeText(1), "1");
  EXPECT_EQ(fourCharCodeText(0xFFFFFFFF), "4294967295");
}

}  // namespace
}  // namespace lumenscribe
