// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "compare/line_differences.h"

#include <algorithm>

#include "analyzers/text_lines.h"

namespace lumenscribe {

TextDifference::TextDifference(std::int64_t lineNumber, std::optional<std::string> first,
                               std::optional<std::string> second)
    : id(Uuid::random()),
      lineNumber(lineNumber),
      first(std::move(first)),
      second(std::move(second)) {}

LineDifferences compareLines(std::string_view first, std::string_view second) {
  const std::vector<std::string_view> firstLines = splitLines(first);
  const std::vector<std::string_view> secondLines = splitLines(second);
  const auto lineAt = [](const std::vector<std::string_view>& lines,
                         std::size_t index) -> std::optional<std::string_view> {
    if (index < lines.size()) return lines[index];
    return std::nullopt;
  };
  const auto owned = [](std::optional<std::string_view> line) -> std::optional<std::string> {
    if (line) return std::string(*line);
    return std::nullopt;
  };

  LineDifferences result;
  const std::size_t positions = std::max(firstLines.size(), secondLines.size());
  for (std::size_t index = 0; index < positions; ++index) {
    const auto a = lineAt(firstLines, index);
    const auto b = lineAt(secondLines, index);
    if (a == b) continue;  // both present and equal (both absent cannot happen here)
    ++result.totalChangedLines;
    if (result.differences.size() < kMaxStoredDifferences) {
      result.differences.emplace_back(static_cast<std::int64_t>(index) + 1, owned(a), owned(b));
    }
  }
  return result;
}

}  // namespace lumenscribe
