// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lumenscribe/result.h"

namespace lumenscribe {

/// One line position at which two texts differ. A side is absent where its text has no line
/// there (it has fewer lines).
struct TextDifference {
  TextDifference(std::int64_t lineNumber, std::optional<std::string> first,
                 std::optional<std::string> second);

  Uuid id;
  /// 1-based position.
  std::int64_t lineNumber;
  std::optional<std::string> first;
  std::optional<std::string> second;

  friend bool operator==(const TextDifference&, const TextDifference&) = default;
};

/// At most this many differences are kept, however many lines differ.
inline constexpr std::size_t kMaxStoredDifferences = 12;

struct LineDifferences {
  /// The first differing positions, at most kMaxStoredDifferences, in position order.
  std::vector<TextDifference> differences;
  /// Every differing position counted.
  std::int64_t totalChangedLines = 0;
};

/// Compares two decoded texts (UTF-8) line by line, position by position: the lines are the
/// pieces between line separators (splitLines), and position n differs when only one text
/// has an n-th line or both have one and they are not equal byte for byte. A line inserted
/// near the top therefore makes every later position differ.
///
///     compareLines("a\nb\nc", "a\nB")
///     // total 2: line 2 ("b" vs "B") and line 3 ("c" vs no line)
LineDifferences compareLines(std::string_view first, std::string_view second);

}  // namespace lumenscribe
