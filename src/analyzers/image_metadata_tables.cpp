// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/image_metadata_tables.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

namespace lumenscribe {

namespace {

using Code = std::pair<std::int64_t, std::string_view>;

constexpr Code kExposurePrograms[] = {
    {0, "Not defined"},       {1, "Manual"},           {2, "Program AE"},
    {3, "Aperture priority"}, {4, "Shutter priority"}, {5, "Creative program"},
    {6, "Action program"},    {7, "Portrait mode"},    {8, "Landscape mode"},
};

constexpr Code kExposureModes[] = {
    {0, "Auto exposure"}, {1, "Manual exposure"}, {2, "Auto bracket"}};

constexpr Code kMeteringModes[] = {
    {0, "Unknown"}, {1, "Average"},    {2, "Center-weighted average"},
    {3, "Spot"},    {4, "Multi-spot"}, {5, "Pattern / multi-segment"},
    {6, "Partial"}, {255, "Other"},
};

constexpr Code kWhiteBalances[] = {{0, "Auto"}, {1, "Manual"}};

constexpr Code kSceneCaptureTypes[] = {
    {0, "Standard"}, {1, "Landscape"}, {2, "Portrait"}, {3, "Night scene"}};

constexpr Code kColorSpaces[] = {{1, "sRGB"}, {65535, "Uncalibrated"}};

std::string lookUp(std::span<const Code> table, const MetadataValue& value) {
  if (const auto code = metadataInt(value)) {
    for (const auto& [known, text] : table) {
      if (known == *code) return std::string(text);
    }
  }
  return metadataValueText(value);
}

}  // namespace

std::string exposureProgramText(const MetadataValue& value) {
  return lookUp(kExposurePrograms, value);
}
std::string exposureModeText(const MetadataValue& value) { return lookUp(kExposureModes, value); }
std::string meteringModeText(const MetadataValue& value) { return lookUp(kMeteringModes, value); }
std::string whiteBalanceText(const MetadataValue& value) { return lookUp(kWhiteBalances, value); }
std::string sceneCaptureTypeText(const MetadataValue& value) {
  return lookUp(kSceneCaptureTypes, value);
}
std::string colorSpaceText(const MetadataValue& value) { return lookUp(kColorSpaces, value); }

}  // namespace lumenscribe
