// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT

// The counting of the PDF and text analyses against the naive way, ICU's RegexMatcher with
// the four expressions and ICU's character break iterator: any count that differs is a
// crash. Bytes that are not UTF-8 read as U+FFFD, one per byte, for both.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "../tests/analyzers/icu_reference.h"
#include "analyzers/content_patterns.h"
#include "analyzers/text_statistics.h"
#include "core/path_text.h"
#include "fuzz_check.h"
#include "platform/grapheme_clusters.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lumenscribe;
  // ICU's backtracking takes quadratic time on long runs; the counting itself does not.
  if (size > 16 * 1024) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::string text = validUtf8(bytes);

  const ContentCounts counts = countContentPatterns(text);
  FUZZ_CHECK(counts == test::icuContentCounts(text));
  FUZZ_CHECK(countContentPatterns(bytes) == counts);

  platform::GraphemeCounter graphemes;
  const std::int64_t characters = test::icuGraphemeCount(text);
  FUZZ_CHECK(graphemes.count(text) == characters);
  FUZZ_CHECK(computeTextStatistics(text).characters == characters);
  return 0;
}
