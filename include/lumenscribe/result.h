// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <vector>

namespace lumenscribe {

/// A random (version 4) UUID. Every record gets a fresh one when it is made, so two records
/// built from the same values are still different records.
class Uuid {
 public:
  /// A fresh random identifier.
  static Uuid random();

  /// Canonical lower-case form, e.g. "3f2b9c1e-4d7a-4c2e-9b1f-0a6e5d4c3b2a".
  std::string text() const;
  const std::array<std::uint8_t, 16>& bytes() const { return bytes_; }

  friend bool operator==(const Uuid&, const Uuid&) = default;

 private:
  std::array<std::uint8_t, 16> bytes_{};
};

/// One label/value line of a section. `value` is display text, already formatted.
struct InsightRow {
  InsightRow(std::string label, std::string value);

  Uuid id;
  std::string label;
  std::string value;

  friend bool operator==(const InsightRow&, const InsightRow&) = default;
};

/// A titled group of rows, e.g. "Identity & Integrity" with icon "fingerprint".
/// `systemImage` is an SF Symbols name carried as data; the window maps it to an icon.
struct InsightSection {
  InsightSection(std::string title, std::string systemImage, std::vector<InsightRow> rows);

  Uuid id;
  std::string title;
  std::string systemImage;
  std::vector<InsightRow> rows;

  friend bool operator==(const InsightSection&, const InsightSection&) = default;
};

/// Severity of a finding. The raw values ("neutral", "notice", "sensitive") are stable text.
enum class PrivacyLevel { neutral, notice, sensitive };

std::string_view rawValue(PrivacyLevel level);
/// "INFO", "CAUTION" or "WARNING".
std::string_view badgeText(PrivacyLevel level);
/// "Info", "Caution" or "Warning".
std::string_view countLabel(PrivacyLevel level);
/// The level whose raw value is `text`; nothing for any other text.
std::optional<PrivacyLevel> privacyLevelFromRawValue(std::string_view text);

/// What someone who receives the file could learn from it.
struct PrivacyFinding {
  PrivacyFinding(std::string title, std::string detail, PrivacyLevel level);

  Uuid id;
  std::string title;
  std::string detail;
  PrivacyLevel level;

  friend bool operator==(const PrivacyFinding&, const PrivacyFinding&) = default;
};

/// Flat key/value view of everything read. Iteration is in code point order of the keys
/// (UTF-8 byte order), which is the order the report prints them in.
using RawMetadata = std::map<std::string, std::string>;

/// The outcome of inspecting one item. A plain value, built once by FileInspector.
struct LumenscribeResult {
  LumenscribeResult(std::filesystem::path url, std::string displayName, std::string typeDescription,
                    std::int64_t summaryCount, std::vector<std::string> summaryItems,
                    std::vector<InsightSection> sections,
                    std::vector<PrivacyFinding> privacyFindings, RawMetadata rawMetadata);

  Uuid id;
  /// The inspected item as it was given (absolute).
  std::filesystem::path url;
  /// Valid UTF-8: bytes of the name that are not UTF-8 read as U+FFFD.
  std::string displayName;
  std::string typeDescription;
  std::int64_t summaryCount;
  std::vector<std::string> summaryItems;
  std::vector<InsightSection> sections;
  std::vector<PrivacyFinding> privacyFindings;
  RawMetadata rawMetadata;

  friend bool operator==(const LumenscribeResult&, const LumenscribeResult&) = default;
};

/// Errors of the engine's own, carried as std::error_code so that they travel beside the
/// system's errors (a missing path fails with the system's ENOENT).
enum class FileInspectionError { unsupportedFile = 1, unreadableFile };

const std::error_category& fileInspectionCategory();
std::error_code make_error_code(FileInspectionError error);

}  // namespace lumenscribe

template <>
struct std::is_error_code_enum<lumenscribe::FileInspectionError> : std::true_type {};

template <>
struct std::hash<lumenscribe::Uuid> {
  std::size_t operator()(const lumenscribe::Uuid& uuid) const noexcept;
};
template <>
struct std::hash<lumenscribe::InsightRow> {
  std::size_t operator()(const lumenscribe::InsightRow& row) const noexcept;
};
template <>
struct std::hash<lumenscribe::InsightSection> {
  std::size_t operator()(const lumenscribe::InsightSection& section) const noexcept;
};
template <>
struct std::hash<lumenscribe::PrivacyFinding> {
  std::size_t operator()(const lumenscribe::PrivacyFinding& finding) const noexcept;
};
template <>
struct std::hash<lumenscribe::LumenscribeResult> {
  std::size_t operator()(const lumenscribe::LumenscribeResult& result) const noexcept;
};
