// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/image_pass.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "identity/content_signature.h"

namespace lumenscribe {

namespace {

// Starting a decoder worker costs more than a small file's whole inspection, and no image
// loader or metadata reader reads text, PDFs, archives, audio or video: those are not sent to one.
bool mayHoldPicture(const platform::OpenedItem& item) {
  using namespace std::string_view_literals;
  constexpr std::array kNeverPictures = {"text"sv, "pdf"sv, "archive"sv, "audio"sv, "video"sv};
  const auto signature = contentSignatureOf(item.head());
  return !signature || std::find(kNeverPictures.begin(), kNeverPictures.end(),
                                 signature->category) == kNeverPictures.end();
}

void addSection(Accumulators& accumulators, const std::vector<InsightRow>& rows, const char* title,
                const char* icon) {
  accumulators.sections.emplace_back(title, icon, rows);
  accumulators.summaryItems.emplace_back(title);
}

}  // namespace

std::optional<MetadataValue::Map> readImagePropertyMap(const platform::OpenedItem& item,
                                                       platform::DecoderClient& decoder) {
  if (!item.facts().isRegularFile || !item.isReadable() || item.size() <= 0 ||
      !mayHoldPicture(item)) {
    return std::nullopt;
  }
  auto reply = decoder.imageProperties(item);
  if (!reply || !reply->has_value() || (*reply)->imageCount < 1) return std::nullopt;
  return std::move((*reply)->properties);
}

void addImageMetadata(const ImageMetadataGroups& groups, Accumulators& accumulators) {
  if (!groups.imageRows.empty()) {
    addSection(accumulators, groups.imageRows, "Image", "photo.fill");
  }
  if (!groups.cameraRows.empty()) {
    addSection(accumulators, groups.cameraRows, "Camera", "camera.fill");
  }
  if (!groups.locationRows.empty()) {
    addSection(accumulators, groups.locationRows, "Location", "location.fill");
    accumulators.findings.emplace_back(
        "Location data is embedded",
        "This photo contains GPS metadata that may reveal where it was captured if the "
        "metadata is preserved when shared.",
        PrivacyLevel::notice);
  }
  if (!groups.creatorRows.empty()) {
    addSection(accumulators, groups.creatorRows, "Software & Creator",
               "person.text.rectangle.fill");
    accumulators.findings.emplace_back(
        "Creation history is visible",
        "The file identifies software, author, artist, or copyright information when present.",
        PrivacyLevel::notice);
  }
  for (const auto& [key, value] : groups.rawMetadata) accumulators.setRaw(key, value);
  if (!groups.cameraRows.empty()) {
    accumulators.findings.emplace_back(
        "Camera details are visible",
        "Camera body, lens, and exposure settings may travel with this file when it is shared.",
        PrivacyLevel::notice);
  }
}

void addImagePass(const std::optional<MetadataValue::Map>& properties, Accumulators& accumulators) {
  if (properties) addImageMetadata(analyzeImageProperties(*properties), accumulators);
}

}  // namespace lumenscribe
