// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace lumenscribe::platform {

/// Counts user-perceived characters (extended grapheme clusters of Unicode Standard Annex
/// #29) as ICU's character break iterator finds them: CR LF is one, a letter with combining
/// marks is one, an emoji ZWJ sequence is one.
///
/// Most text is made of characters that form a cluster on their own (ASCII, Latin, Cyrillic,
/// CJK...); between two of those there is always a boundary, and the text on either side
/// cannot change it. Those runs are counted directly, and only the stretches around other
/// characters (combining marks, emoji, Hangul jamo, Indic scripts) go to ICU, which makes a
/// large ASCII log about as fast to count as to read.
///
/// One counter serves one thread; make one per analysis.
class GraphemeCounter {
 public:
  GraphemeCounter();
  ~GraphemeCounter();
  GraphemeCounter(const GraphemeCounter&) = delete;
  GraphemeCounter& operator=(const GraphemeCounter&) = delete;

  /// The clusters of `text` (UTF-8; an ill-formed byte counts as one U+FFFD).
  std::int64_t count(std::string_view text);

 private:
  struct Iterator;
  std::int64_t countWithIcu(std::string_view text);

  std::unique_ptr<Iterator> iterator_;
};

}  // namespace lumenscribe::platform
