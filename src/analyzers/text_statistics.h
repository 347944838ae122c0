// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

#include "analyzers/text_lines.h"

namespace lumenscribe {

/// The counts of a decoded text, all in one walk over it.
struct TextStatistics {
  /// Pieces between line separators (splitLines), never less than 1.
  std::int64_t lines = 1;
  /// Non-empty runs between white space and line breaks (general category Z, U+0009 to
  /// U+000D, U+0085), split code point by code point.
  std::int64_t words = 0;
  /// Extended grapheme clusters; CR LF is one.
  std::int64_t characters = 0;
  /// Pieces that are empty once that white space is trimmed from both ends.
  std::int64_t blankLines = 0;
  /// The greatest length of a piece, in grapheme clusters.
  std::int64_t longestLine = 0;
  LineEndingCounts lineEndings;

  friend bool operator==(const TextStatistics&, const TextStatistics&) = default;
};

/// True for the characters that separate words and that a blank line may hold.
bool isWhiteSpaceOrNewline(char32_t c);

/// The statistics of `text` (UTF-8).
///
///     computeTextStatistics("a\r\nb\r\n")
///     // lines 5 (a, "", b, "", ""), words 2, characters 4, blank lines 3, longest 1
TextStatistics computeTextStatistics(std::string_view text);

}  // namespace lumenscribe
