// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/grapheme_clusters.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>

#include <vector>

#include "core/utf8.h"

namespace lumenscribe::platform {

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);
// How many standalone characters in a row end a stretch handed to ICU: long enough that
// text in a script full of combining marks goes to ICU in few large pieces, short enough
// that an emoji in a log costs little.
constexpr int kStandaloneRunToLeave = 32;
// ICU's break iterator speaks 32-bit offsets.
constexpr std::size_t kLongestStretch = std::size_t{1} << 30;

// A character whose cluster break property is Other, Control, CR or LF and that is not
// Extended_Pictographic. Between two such characters UAX #29 always breaks (bar CR LF):
// no rule joins them, and the rules that look further back (emoji ZWJ sequences, regional
// indicator pairs) are cut off by them.
bool computeStandalone(UChar32 c) {
  switch (u_getIntPropertyValue(c, UCHAR_GRAPHEME_CLUSTER_BREAK)) {
    case U_GCB_OTHER:
    case U_GCB_CONTROL:
    case U_GCB_CR:
    case U_GCB_LF: return !u_hasBinaryProperty(c, UCHAR_EXTENDED_PICTOGRAPHIC);
    default: return false;
  }
}

const std::vector<bool>& basicPlaneStandalone() {
  static const std::vector<bool> table = [] {
    std::vector<bool> standalone(0x10000);
    for (UChar32 c = 0; c < 0x10000; ++c) standalone[c] = computeStandalone(c);
    return standalone;
  }();
  return table;
}

bool isStandalone(char32_t c, const std::vector<bool>& basicPlane) {
  if (c < 0x10000) return basicPlane[c];
  return computeStandalone(static_cast<UChar32>(c));
}

// Where a stretch that began with a joining character at `start` may end: before the first
// of a long run of standalone characters (a boundary both sides of which are independent).
std::size_t stretchEnd(std::string_view text, std::size_t start, std::size_t from,
                       const std::vector<bool>& basicPlane) {
  std::size_t cut = kNone;
  int run = 0;
  bool previousStandalone = false;
  char32_t previous = 0;
  std::size_t offset = from;
  while (offset < text.size()) {
    if (offset - start >= kLongestStretch) return cut != kNone ? cut : offset;
    const utf8::CodePoint point = utf8::decodeAt(text, offset);
    const bool standalone = isStandalone(point.value, basicPlane);
    if (standalone && previousStandalone && !(previous == '\r' && point.value == '\n')) {
      if (cut == kNone) {
        cut = offset;
        run = 0;
      }
      if (++run >= kStandaloneRunToLeave) return cut;
    } else if (!standalone) {
      cut = kNone;
    }
    previousStandalone = standalone;
    previous = point.value;
    offset += point.length;
  }
  return text.size();
}

}  // namespace

// Made on first need: text without joining characters never needs it.
struct GraphemeCounter::Iterator {
  std::unique_ptr<icu::BreakIterator> characters;
  UText text = UTEXT_INITIALIZER;

  Iterator() {
    UErrorCode status = U_ZERO_ERROR;
    characters.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status)) characters.reset();
  }
  ~Iterator() { utext_close(&text); }
};

GraphemeCounter::GraphemeCounter() = default;

GraphemeCounter::~GraphemeCounter() = default;

std::int64_t GraphemeCounter::countWithIcu(std::string_view text) {
  if (!iterator_) iterator_ = std::make_unique<Iterator>();
  UErrorCode status = U_ZERO_ERROR;
  utext_openUTF8(&iterator_->text, text.data(), static_cast<std::int64_t>(text.size()), &status);
  if (iterator_->characters && U_SUCCESS(status)) {
    iterator_->characters->setText(&iterator_->text, status);
    if (U_SUCCESS(status)) {
      std::int64_t count = 0;
      iterator_->characters->first();
      while (iterator_->characters->next() != icu::BreakIterator::DONE) ++count;
      return count;
    }
  }
  // Without ICU's break rules, code points are the nearest count there is.
  std::int64_t count = 0;
  for (std::size_t offset = 0; offset < text.size(); ++count) {
    offset += utf8::decodeAt(text, offset).length;
  }
  return count;
}

std::int64_t GraphemeCounter::count(std::string_view text) {
  const std::vector<bool>& basicPlane = basicPlaneStandalone();
  std::int64_t total = 0;
  std::size_t previous = kNone;  // where the cluster before `offset` starts, when counted here
  std::size_t offset = 0;
  while (offset < text.size()) {
    const auto lead = static_cast<std::uint8_t>(text[offset]);
    if (lead < 0x80) {
      // An LF right after a CR counted here belongs to the CR's cluster.
      if (!(lead == '\n' && previous != kNone && previous + 1 == offset &&
            text[previous] == '\r')) {
        ++total;
        previous = offset;
      }
      ++offset;
      continue;
    }
    const utf8::CodePoint point = utf8::decodeAt(text, offset);
    if (isStandalone(point.value, basicPlane)) {
      ++total;
      previous = offset;
      offset += point.length;
      continue;
    }
    // The character may join the cluster before it, so that cluster goes to ICU too.
    std::size_t start = offset;
    if (previous != kNone) {
      start = previous;
      --total;
    }
    const std::size_t end = stretchEnd(text, start, offset + point.length, basicPlane);
    total += countWithIcu(text.substr(start, end - start));
    previous = kNone;
    offset = end;
  }
  return total;
}

}  // namespace lumenscribe::platform
