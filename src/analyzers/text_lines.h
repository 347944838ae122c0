// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace lumenscribe {

/// True for the characters that end a line: U+000A to U+000D, U+0085, U+2028 and U+2029.
constexpr bool isLineSeparator(char32_t c) {
  return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029;
}

/// The pieces of `text` (UTF-8) between line separators. Every separator ends a piece by
/// itself, so CR LF leaves an empty piece between its two characters; the text before the
/// first separator, between any two and after the last all count, empty ones included, so
/// there is always at least one piece.
///
///     splitLines("a\r\nb")  // {"a", "", "b"}
std::vector<std::string_view> splitLines(std::string_view text);

/// How a text ends its lines. A CR LF pair counts once; a CR and an LF that only the removal
/// of CR LF pairs between them brings together form one CR LF character, which counts as
/// neither.
struct LineEndingCounts {
  std::int64_t crlf = 0;
  std::int64_t lf = 0;
  std::int64_t cr = 0;

  friend bool operator==(const LineEndingCounts&, const LineEndingCounts&) = default;
};

LineEndingCounts countLineEndings(std::string_view text);

/// "Windows (CRLF)", "Unix/macOS (LF)", "Classic Mac (CR)", "Mixed" when two or three kinds
/// occur, or "Single line / none detected".
std::string_view lineEndingLabel(const LineEndingCounts& counts);

/// lineEndingLabel(countLineEndings(text)).
std::string_view describeLineEndings(std::string_view text);

/// For the LF at `offset`, not part of a CR LF pair: whether only CR LF pairs stand between
/// it and a lone CR before it, so that the two join once the pairs are removed.
bool joinsLoneCarriageReturn(std::string_view text, std::size_t offset);

}  // namespace lumenscribe
