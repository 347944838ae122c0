// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The line comparison over two texts, each half of the input decoded as the comparison
// decodes a file. The count must lie between the difference in line counts and the larger
// count, the same either way round and 0 for a text against itself; the stored differences
// must be the first ones, in order, each a real difference.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "analyzers/text_encoding.h"
#include "analyzers/text_lines.h"
#include "compare/line_differences.h"
#include "fuzz_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lumenscribe;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto first = detectTextEncoding(bytes.substr(0, size / 2));
  const auto second = detectTextEncoding(bytes.substr(size / 2));
  FUZZ_CHECK(first && second);  // Mac OS Roman takes any byte
  const auto a = first->text();
  const auto b = second->text();
  const auto aLines = static_cast<std::int64_t>(splitLines(a).size());
  const auto bLines = static_cast<std::int64_t>(splitLines(b).size());

  const LineDifferences lines = compareLines(a, b);
  const std::int64_t total = lines.totalChangedLines;
  FUZZ_CHECK(total >= std::max(aLines, bLines) - std::min(aLines, bLines));
  FUZZ_CHECK(total <= std::max(aLines, bLines));
  FUZZ_CHECK(static_cast<std::int64_t>(lines.differences.size()) ==
             std::min<std::int64_t>(total, kMaxStoredDifferences));
  std::int64_t previous = 0;
  for (const TextDifference& difference : lines.differences) {
    FUZZ_CHECK(difference.lineNumber > previous);
    previous = difference.lineNumber;
    FUZZ_CHECK(difference.first.has_value() == (difference.lineNumber <= aLines));
    FUZZ_CHECK(difference.second.has_value() == (difference.lineNumber <= bLines));
    FUZZ_CHECK(difference.first != difference.second);
  }
  FUZZ_CHECK(compareLines(b, a).totalChangedLines == total);
  FUZZ_CHECK(compareLines(a, a).totalChangedLines == 0);
  return 0;
}
