// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

// The naive way to count what the text and PDF analyses count: ICU's RegexMatcher over the
// text as UTF-16, and ICU's character break iterator. Slow, but it is what the counts mean;
// the tests and the fuzz targets hold the fast counting to it.
#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <cstdint>
#include <memory>
#include <string_view>

#include "analyzers/content_patterns.h"

namespace lumenscribe::test {

inline icu::UnicodeString utf16Of(std::string_view utf8) {
  return icu::UnicodeString::fromUTF8(
      icu::StringPiece(utf8.data(), static_cast<std::int32_t>(utf8.size())));
}

/// Non-overlapping matches from the start; -1 when the pattern does not compile.
inline std::int64_t icuMatchCount(const ContentPattern& pattern, const icu::UnicodeString& text) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString expression = utf16Of(pattern.expression);
  icu::RegexMatcher matcher(expression, pattern.caseInsensitive ? UREGEX_CASE_INSENSITIVE : 0,
                            status);
  if (U_FAILURE(status)) return -1;
  matcher.reset(text);
  std::int64_t count = 0;
  while (matcher.find(status) && U_SUCCESS(status)) ++count;
  return count;
}

inline ContentCounts icuContentCounts(std::string_view utf8) {
  const icu::UnicodeString text = utf16Of(utf8);
  ContentCounts counts;
  counts.emailAddresses = icuMatchCount(kEmailAddressPattern, text);
  counts.phoneNumbers = icuMatchCount(kPhoneNumberPattern, text);
  counts.ipAddresses = icuMatchCount(kIpAddressPattern, text);
  counts.webLinks = icuMatchCount(kWebLinkPattern, text);
  return counts;
}

inline std::int64_t icuGraphemeCount(std::string_view utf8) {
  const icu::UnicodeString text = utf16Of(utf8);
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::BreakIterator> characters(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  if (U_FAILURE(status)) return -1;
  characters->setText(text);
  std::int64_t count = 0;
  characters->first();
  while (characters->next() != icu::BreakIterator::DONE) ++count;
  return count;
}

}  // namespace lumenscribe::test
