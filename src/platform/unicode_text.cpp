// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/unicode_text.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

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
