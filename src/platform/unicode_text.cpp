// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/unicode_text.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <memory>

namespace lumenscribe::platform {

namespace {

icu::UnicodeString fromUtf8(std::string_view utf8) {
  return icu::UnicodeString::fromUTF8(
      icu::StringPiece(utf8.data(), static_cast<std::int32_t>(utf8.size())));
}

}  // namespace

std::string upperCased(std::string_view utf8) {
  icu::UnicodeString text = fromUtf8(utf8);
  text.toUpper(icu::Locale::getRoot());
  std::string out;
  return text.toUTF8String(out);
}

std::string lowerCased(std::string_view utf8) {
  icu::UnicodeString text = fromUtf8(utf8);
  text.toLower(icu::Locale::getRoot());
  std::string out;
  return text.toUTF8String(out);
}

std::string_view trimmedWhitespace(std::string_view utf8) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(utf8.data());
  const auto length = static_cast<std::int32_t>(std::min<std::size_t>(utf8.size(), INT32_MAX));
  std::int32_t begin = 0;
  while (begin < length) {
    std::int32_t next = begin;
    UChar32 c = 0;
    U8_NEXT(bytes, next, length, c);
    if (c < 0 || !u_isUWhiteSpace(c)) break;
    begin = next;
  }
  std::int32_t end = length;
  while (end > begin) {
    std::int32_t previous = end;
    UChar32 c = 0;
    U8_PREV(bytes, begin, previous, c);
    if (c < 0 || !u_isUWhiteSpace(c)) break;
    end = previous;
  }
  return utf8.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
}

std::size_t characterCount(std::string_view utf8) {
  const icu::UnicodeString text = fromUtf8(utf8);
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::BreakIterator> characters(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  if (U_FAILURE(status) || !characters) return static_cast<std::size_t>(text.countChar32());
  characters->setText(text);
  std::size_t count = 0;
  for (auto boundary = characters->next(); boundary != icu::BreakIterator::DONE;
       boundary = characters->next()) {
    ++count;
  }
  return count;
}

}  // namespace lumenscribe::platform
