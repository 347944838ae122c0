// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "compare/file_comparison.h"

namespace lumenscribe {

/// The words of the comparison sheet, for the window and the command line alike.
namespace comparison_text {

inline constexpr std::string_view kCaption =
    "SHA-256 is a digital fingerprint of the file. If the file changes, its fingerprint "
    "changes too.";
inline constexpr std::string_view kFirstFingerprintLabel = "First Digital Fingerprint (SHA-256)";
inline constexpr std::string_view kSecondFingerprintLabel = "Second Digital Fingerprint (SHA-256)";
inline constexpr std::string_view kTextCardTitle = "Text Differences";
inline constexpr std::string_view kTextCardIcon = "text.badge.minus";

/// A headline: its icon (an SF Symbols name), title and message.
struct Headline {
  std::string_view icon;
  std::string_view title;
  std::string_view message;
};

/// "Exact Match" or "Files Are Different".
Headline header(const FileComparison& comparison);
/// "Picture Pixels Match" or "Picture Pixels Differ"; nothing without a pixel comparison. Two
/// byte-for-byte identical images say they decoded to the same pixels, not that the files
/// differ.
std::optional<Headline> pixelCard(const FileComparison& comparison);

/// "{size} bytes — match" or "{first} vs {second} bytes".
std::string sizeRow(const FileComparison& comparison);
/// "{type} — match" or "{first type} vs {second type}".
std::string typeRow(const FileComparison& comparison);
/// "Match (SHA-256)" or "Different (SHA-256)".
std::string_view fingerprintRow(const FileComparison& comparison);

/// "1 changed line", "20 changed lines".
std::string changedLinesText(std::int64_t total);
/// "Showing the first {stored} differences." when fewer are stored than counted, else
/// "Showing all detected line differences.".
std::string shownDifferencesText(std::size_t stored, std::int64_t total);
/// "⟨no line⟩" for an absent side, "⟨blank line⟩" for an empty one, else the line itself.
std::string lineText(const std::optional<std::string>& line);

}  // namespace comparison_text

/// The comparison as the sheet shows it, as plain UTF-8 lines (no final line feed): header,
/// First/Second, Size, Type, Digital Fingerprint and its caption, then the pixel, fingerprint
/// and text cards where the sheet shows them.
std::string comparisonReport(const FileComparison& comparison);

/// The comparison as one JSON object: firstPath, secondPath, firstSize, secondSize,
/// firstType, secondType, firstHash, secondHash, identical, textDifferences (lineNumber,
/// first, second; null sides where a file has no line) or null, totalChangedLines or null,
/// pixelMatch or null, pixelDimensions or null.
std::string comparisonJson(const FileComparison& comparison);

}  // namespace lumenscribe
