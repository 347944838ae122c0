// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace lumenscribe {

/// One kind of contact data that the PDF and text analyses count: a regular expression in
/// ICU's syntax and whether it matches case-insensitively. These expressions are what the
/// counts mean; countContentPatterns gives exactly the counts that ICU's RegexMatcher gives
/// for them (tests/analyzers/content_patterns_test.cpp and the fuzz target prove it).
struct ContentPattern {
  std::string_view expression;
  bool caseInsensitive = false;
};

inline constexpr ContentPattern kEmailAddressPattern{R"([A-Z0-9._%+-]+@[A-Z0-9.-]+\.[A-Z]{2,})",
                                                     true};
inline constexpr ContentPattern kWebLinkPattern{R"(https?://[^\s<>"']+)", false};
inline constexpr ContentPattern kIpAddressPattern{
    R"((?<!\d)(?:(?:25[0-5]|2[0-4]\d|1?\d?\d)\.){3}(?:25[0-5]|2[0-4]\d|1?\d?\d)(?!\d))", false};
inline constexpr ContentPattern kPhoneNumberPattern{
    R"((?<!\d)(?:\+?1[\s.-]?)?(?:\(?\d{3}\)?[\s.-]?)\d{3}[\s.-]\d{4}(?!\d))", false};

/// How many times each pattern matches a text. The matched values are never kept.
struct ContentCounts {
  std::int64_t emailAddresses = 0;
  std::int64_t phoneNumbers = 0;
  std::int64_t ipAddresses = 0;
  std::int64_t webLinks = 0;

  friend bool operator==(const ContentCounts&, const ContentCounts&) = default;
};

/// The number of non-overlapping matches of each pattern, scanning `text` (UTF-8) from the
/// start, as ICU counts them. Runs in one pass per pattern with no backtracking blow-up, so
/// that a 100 MB log is counted in a fraction of a second; an ill-formed byte reads as
/// U+FFFD. Safe to call from any thread.
///
///     countContentPatterns("Mail Ann@Example.org or call 555-123-4567")
///     // {emailAddresses 1, phoneNumbers 1, ipAddresses 0, webLinks 0}
ContentCounts countContentPatterns(std::string_view text);

}  // namespace lumenscribe
