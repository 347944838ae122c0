// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "lumenscribe/result.h"

#include <cstdio>
#include <functional>
#include <span>

#include "platform/random.h"

namespace lumenscribe {

namespace {

// boost::hash_combine's mixing step, widened to 64 bits.
void combine(std::size_t& seed, std::size_t value) {
  seed ^= value + 0x9e3779b97f4a7c15ULL + (seed << 12) + (seed >> 4);
}

std::size_t hashText(std::string_view text) { return std::hash<std::string_view>{}(text); }

}  // namespace

Uuid Uuid::random() {
  Uuid uuid;
  platform::fillRandom(std::as_writable_bytes(std::span(uuid.bytes_)));
  uuid.bytes_[6] = static_cast<std::uint8_t>((uuid.bytes_[6] & 0x0F) | 0x40);  // version 4
  uuid.bytes_[8] = static_cast<std::uint8_t>((uuid.bytes_[8] & 0x3F) | 0x80);  // RFC 4122 variant
  return uuid;
}

std::string Uuid::text() const {
  static constexpr char digits[] = "0123456789abcdef";
  std::string text;
  text.reserve(36);
  for (std::size_t i = 0; i < bytes_.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text.push_back('-');
    text.push_back(digits[bytes_[i] >> 4]);
    text.push_back(digits[bytes_[i] & 0x0F]);
  }
  return text;
}

InsightRow::InsightRow(std::string label, std::string value)
    : id(Uuid::random()), label(std::move(label)), value(std::move(value)) {}

InsightSection::InsightSection(std::string title, std::string systemImage,
                               std::vector<InsightRow> rows)
    : id(Uuid::random()),
      title(std::move(title)),
      systemImage(std::move(systemImage)),
      rows(std::move(rows)) {}

PrivacyFinding::PrivacyFinding(std::string title, std::string detail, PrivacyLevel level)
    : id(Uuid::random()), title(std::move(title)), detail(std::move(detail)), level(level) {}

LumenscribeResult::LumenscribeResult(std::filesystem::path url, std::string displayName,
                                     std::string typeDescription, std::int64_t summaryCount,
                                     std::vector<std::string> summaryItems,
                                     std::vector<InsightSection> sections,
                                     std::vector<PrivacyFinding> privacyFindings,
                                     RawMetadata rawMetadata)
    : id(Uuid::random()),
      url(std::move(url)),
      displayName(std::move(displayName)),
      typeDescription(std::move(typeDescription)),
      summaryCount(summaryCount),
      summaryItems(std::move(summaryItems)),
      sections(std::move(sections)),
      privacyFindings(std::move(privacyFindings)),
      rawMetadata(std::move(rawMetadata)) {}

namespace {

struct LevelNames {
  std::string_view raw;
  std::string_view badge;
  std::string_view label;
};

// Indexed by PrivacyLevel, in declaration order.
constexpr LevelNames kLevelNames[] = {
    {"neutral", "INFO", "Info"},
    {"notice", "CAUTION", "Caution"},
    {"sensitive", "WARNING", "Warning"},
};

const LevelNames& namesOf(PrivacyLevel level) { return kLevelNames[static_cast<int>(level)]; }

}  // namespace

std::string_view rawValue(PrivacyLevel level) { return namesOf(level).raw; }
std::string_view badgeText(PrivacyLevel level) { return namesOf(level).badge; }
std::string_view countLabel(PrivacyLevel level) { return namesOf(level).label; }

std::optional<PrivacyLevel> privacyLevelFromRawValue(std::string_view text) {
  for (auto level : {PrivacyLevel::neutral, PrivacyLevel::notice, PrivacyLevel::sensitive}) {
    if (rawValue(level) == text) return level;
  }
  return std::nullopt;
}

namespace {

class FileInspectionCategory final : public std::error_category {
 public:
  const char* name() const noexcept override { return "lumenscribe"; }
  std::string message(int condition) const override {
    switch (static_cast<FileInspectionError>(condition)) {
      case FileInspectionError::unsupportedFile:
        return "Lumenscribe could not inspect this file yet.";
      case FileInspectionError::unreadableFile: return "Lumenscribe could not read this file.";
    }
    return "Lumenscribe could not inspect this file yet.";
  }
};

}  // namespace

const std::error_category& fileInspectionCategory() {
  static const FileInspectionCategory category;
  return category;
}

std::error_code make_error_code(FileInspectionError error) {
  return {static_cast<int>(error), fileInspectionCategory()};
}

}  // namespace lumenscribe

using namespace lumenscribe;

std::size_t std::hash<Uuid>::operator()(const Uuid& uuid) const noexcept {
  std::size_t seed = 0;
  for (auto byte : uuid.bytes()) combine(seed, byte);
  return seed;
}

std::size_t std::hash<InsightRow>::operator()(const InsightRow& row) const noexcept {
  std::size_t seed = std::hash<Uuid>{}(row.id);
  combine(seed, hashText(row.label));
  combine(seed, hashText(row.value));
  return seed;
}

std::size_t std::hash<InsightSection>::operator()(const InsightSection& section) const noexcept {
  std::size_t seed = std::hash<Uuid>{}(section.id);
  combine(seed, hashText(section.title));
  combine(seed, hashText(section.systemImage));
  for (const auto& row : section.rows) combine(seed, std::hash<InsightRow>{}(row));
  return seed;
}

std::size_t std::hash<PrivacyFinding>::operator()(const PrivacyFinding& finding) const noexcept {
  std::size_t seed = std::hash<Uuid>{}(finding.id);
  combine(seed, hashText(finding.title));
  combine(seed, hashText(finding.detail));
  combine(seed, hashText(rawValue(finding.level)));
  return seed;
}

std::size_t std::hash<LumenscribeResult>::operator()(
    const LumenscribeResult& result) const noexcept {
  std::size_t seed = std::hash<Uuid>{}(result.id);
  combine(seed, std::hash<std::filesystem::path>{}(result.url));
  combine(seed, hashText(result.displayName));
  combine(seed, hashText(result.typeDescription));
  combine(seed, std::hash<std::int64_t>{}(result.summaryCount));
  for (const auto& item : result.summaryItems) combine(seed, hashText(item));
  for (const auto& section : result.sections) combine(seed, std::hash<InsightSection>{}(section));
  for (const auto& finding : result.privacyFindings) {
    combine(seed, std::hash<PrivacyFinding>{}(finding));
  }
  // The map is ordered, so equal maps hash equally whatever order they were filled in.
  for (const auto& [key, value] : result.rawMetadata) {
    combine(seed, hashText(key));
    combine(seed, hashText(value));
  }
  return seed;
}
