// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/system_metadata.h"

#include <sys/stat.h>

#include <array>
#include <cmath>

#include "core/path_text.h"
#include "identity/formatters.h"
#include "platform/binary_plist.h"

namespace lumenscribe {

namespace {

struct AttributeRow {
  std::string_view attribute;
  std::string_view label;
};

// The rows of "System Metadata", in their order; the raw key is "Spotlight " and the label.
constexpr std::array kSystemRows = {
    AttributeRow{"kMDItemKind", "Kind"},
    AttributeRow{"kMDItemTitle", "Title"},
    AttributeRow{"kMDItemDisplayName", "Display Name"},
    AttributeRow{"kMDItemAuthors", "Authors"},
    AttributeRow{"kMDItemCreator", "Creator"},
    AttributeRow{"kMDItemContentType", "Content Type"},
    AttributeRow{"kMDItemContentTypeTree", "Type Family"},
    AttributeRow{"kMDItemContentCreationDate", "Content Created"},
    AttributeRow{"kMDItemContentModificationDate", "Content Modified"},
    AttributeRow{"kMDItemDurationSeconds", "Duration"},
    AttributeRow{"kMDItemPixelWidth", "Pixel Width"},
    AttributeRow{"kMDItemPixelHeight", "Pixel Height"},
    AttributeRow{"kMDItemCodecs", "Codecs"},
    AttributeRow{"kMDItemAudioBitRate", "Audio Bitrate"},
    AttributeRow{"kMDItemVideoBitRate", "Video Bitrate"},
    AttributeRow{"kMDItemFSOwnerUserID", "Owner User ID"},
};

// Where Linux keeps what the index would know. Browsers of the Chromium family, wget and
// curl --xattr write the freedesktop download attributes; a file copied from a Mac keeps its
// property lists under user. (or, on a few file systems, under their own names).
constexpr std::string_view kOriginUrl = "user.xdg.origin.url";
constexpr std::string_view kReferrerUrl = "user.xdg.referrer.url";
constexpr std::string_view kTitle = "user.dublincore.title";
constexpr std::string_view kAuthors = "user.dublincore.creator";
constexpr std::string_view kCreator = "user.xdg.creator";
constexpr std::array kWhereFroms = {std::string_view("user.com.apple.metadata:kMDItemWhereFroms"),
                                    std::string_view("com.apple.metadata:kMDItemWhereFroms")};
constexpr std::array kDownloadedDate = {
    std::string_view("user.com.apple.metadata:kMDItemDownloadedDate"),
    std::string_view("com.apple.metadata:kMDItemDownloadedDate")};
constexpr std::array kAttributeNames = {kOriginUrl,     kReferrerUrl,       kTitle,
                                        kAuthors,       kCreator,           kWhereFroms[0],
                                        kWhereFroms[1], kDownloadedDate[0], kDownloadedDate[1]};

// A text attribute as a row can show it: up to its first NUL (tools disagree on whether
// the terminator belongs to the value), bad UTF-8 bytes replaced; nothing when empty.
std::optional<std::string> attributeText(const platform::ExtendedAttributes& attributes,
                                         std::string_view name) {
  const auto found = attributes.find(name);
  if (found == attributes.end()) return std::nullopt;
  const std::string_view raw = found->second;
  std::string text = validUtf8(raw.substr(0, raw.find('\0')));
  if (text.empty()) return std::nullopt;
  return text;
}

// A Mac's binary property list under the first of `names` the item carries.
template <std::size_t N>
std::optional<MetadataValue> propertyListAttribute(const platform::ExtendedAttributes& attributes,
                                                   const std::array<std::string_view, N>& names) {
  for (const std::string_view name : names) {
    const auto found = attributes.find(name);
    if (found != attributes.end()) return platform::parseBinaryPlist(found->second);
  }
  return std::nullopt;
}

std::optional<double> numberOf(const MetadataValue& value) {
  if (const auto* number = value.get<std::int64_t>()) return static_cast<double>(*number);
  if (const auto* number = value.get<double>()) return *number;
  return std::nullopt;
}

uid_t ownerOf(const platform::OpenedItem& item) {
  struct stat status {};
  if (item.isReadable() && ::fstat(item.descriptor(), &status) == 0) return status.st_uid;
  return item.attributes().owner;
}

void addRow(std::vector<InsightRow>& rows, Accumulators& accumulators, std::string_view label,
            std::string text) {
  accumulators.setRaw("Spotlight " + std::string(label), text);
  rows.emplace_back(std::string(label), std::move(text));
}

}  // namespace

std::span<const std::string_view> systemMetadataAttributeNames() { return kAttributeNames; }

SystemAttributes systemAttributes(const platform::OpenedItem& item,
                                  const platform::ExtendedAttributes& attributes) {
  SystemAttributes system;
  const ItemFacts& facts = item.facts();
  if (facts.contentType) {
    const ContentType& type = *facts.contentType;
    system.emplace("kMDItemKind", type.describe());
    system.emplace("kMDItemContentType", type.identifier());
    MetadataValue::Array tree{MetadataValue(type.identifier())};
    for (const std::string& ancestor : type.ancestors()) tree.emplace_back(ancestor);
    system.emplace("kMDItemContentTypeTree", std::move(tree));
  }
  system.emplace("kMDItemDisplayName",
                 facts.name ? *facts.name : validUtf8(lastPathComponent(item.url())));
  system.emplace("kMDItemFSOwnerUserID", static_cast<std::int64_t>(ownerOf(item)));
  if (auto title = attributeText(attributes, kTitle)) system.emplace("kMDItemTitle", *title);
  if (auto authors = attributeText(attributes, kAuthors)) {
    system.emplace("kMDItemAuthors", *authors);
  }
  if (auto creator = attributeText(attributes, kCreator)) {
    system.emplace("kMDItemCreator", *creator);
  }

  // The page that served the file, then the page that linked to it, as a Mac lists them.
  MetadataValue::Array whereFroms;
  for (const std::string_view name : {kOriginUrl, kReferrerUrl}) {
    if (auto url = attributeText(attributes, name)) whereFroms.emplace_back(std::move(*url));
  }
  if (!whereFroms.empty()) {
    system.emplace("kMDItemWhereFroms", std::move(whereFroms));
  } else if (auto macWhereFroms = propertyListAttribute(attributes, kWhereFroms)) {
    system.emplace("kMDItemWhereFroms", std::move(*macWhereFroms));
  }
  // A Mac keeps the download date as a list of one date.
  if (auto downloaded = propertyListAttribute(attributes, kDownloadedDate)) {
    const auto* list = downloaded->get<MetadataValue::Array>();
    system.emplace("kMDItemDownloadedDate",
                   list != nullptr && list->size() == 1 ? list->front() : *downloaded);
  }
  return system;
}

std::string spotlightValueText(const MetadataValue& value, std::string_view attribute) {
  if (const auto* date = value.get<Timestamp>()) return mediumDateText(*date);
  if (value.get<MetadataValue::Array>() != nullptr) return metadataValueText(value);
  if (const auto number = numberOf(value)) {
    if (attribute == "kMDItemDurationSeconds") return durationText(*number);
    if ((attribute == "kMDItemAudioBitRate" || attribute == "kMDItemVideoBitRate") &&
        std::isfinite(*number) && std::abs(*number) < 9.2e18) {
      return std::to_string(std::llround(*number)) + " kbps";
    }
  }
  return metadataValueText(value);
}

void addSystemMetadata(const SystemAttributes& attributes, Accumulators& accumulators) {
  const auto textOf = [&attributes](std::string_view attribute) -> std::string {
    const auto found = attributes.find(attribute);
    return found == attributes.end() ? std::string() : spotlightValueText(found->second, attribute);
  };

  std::vector<InsightRow> systemRows;
  for (const AttributeRow& row : kSystemRows) {
    std::string text = textOf(row.attribute);
    if (!text.empty()) addRow(systemRows, accumulators, row.label, std::move(text));
  }

  std::vector<InsightRow> originRows;
  if (std::string whereFrom = textOf("kMDItemWhereFroms"); !whereFrom.empty()) {
    addRow(originRows, accumulators, "Where From", std::move(whereFrom));
    accumulators.findings.emplace_back(
        "Download source is recorded",
        "The file system records information about where this file came from. Lumenscribe "
        "shows it as useful source history.",
        PrivacyLevel::neutral);
  }
  if (std::string downloaded = textOf("kMDItemDownloadedDate"); !downloaded.empty()) {
    addRow(originRows, accumulators, "Downloaded", std::move(downloaded));
  }

  if (!systemRows.empty()) {
    accumulators.sections.emplace_back("System Metadata", "info.square.fill",
                                       std::move(systemRows));
    accumulators.summaryItems.emplace_back("System Metadata");
  }
  if (!originRows.empty()) {
    accumulators.sections.emplace_back("File Origin", "arrow.down.doc.fill", std::move(originRows));
    accumulators.summaryItems.emplace_back("File Origin");
  }
}

void analyzeSystemMetadata(const platform::OpenedItem& item, Accumulators& accumulators) {
  const auto attributes =
      platform::readExtendedAttributes(item.descriptor(), systemMetadataAttributeNames());
  addSystemMetadata(systemAttributes(item, attributes), accumulators);
}

}  // namespace lumenscribe
