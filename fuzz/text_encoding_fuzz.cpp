// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT

// The encoding detection of the text analysis on any bytes: the first candidate that accepts
// them must give well-formed UTF-8 that encodes back to the same bytes, UTF-8 must be
// accepted exactly when ICU finds the bytes well-formed, and the counts of the decoded text
// must hold together.
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "analyzers/text_encoding.h"
#include "analyzers/text_statistics.h"
#include "core/utf8.h"
#include "fuzz_check.h"

namespace {

using namespace lumenscribe;

bool icuFindsUtf8(std::string_view bytes) {
  UErrorCode status = U_ZERO_ERROR;
  std::int32_t length = 0;
  u_strFromUTF8(nullptr, 0, &length, bytes.data(), static_cast<std::int32_t>(bytes.size()),
                &status);
  return status != U_INVALID_CHAR_FOUND && status != U_ILLEGAL_CHAR_FOUND;
}

// `text` (UTF-8) in the ICU encoding `name`.
std::string encode(std::string_view text, const char* name) {
  UErrorCode status = U_ZERO_ERROR;
  std::string out(text.size() * 4 + 16, '\0');
  const std::int32_t length =
      ucnv_convert(name, "UTF-8", out.data(), static_cast<std::int32_t>(out.size()), text.data(),
                   static_cast<std::int32_t>(text.size()), &status);
  FUZZ_CHECK(U_SUCCESS(status));
  out.resize(static_cast<std::size_t>(length));
  return out;
}

std::string_view withoutPrefix(std::string_view bytes, std::string_view prefix) {
  if (bytes.starts_with(prefix)) bytes.remove_prefix(prefix.size());
  return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto decoded = detectTextEncoding(bytes);
  FUZZ_CHECK(decoded);  // Mac OS Roman takes any byte
  const std::string_view name = decoded->encodingName();
  const std::string_view text = decoded->text();
  FUZZ_CHECK(utf8::isValid(text));
  FUZZ_CHECK((name == "UTF-8") == icuFindsUtf8(bytes));

  if (name == "UTF-8") {
    FUZZ_CHECK(text == withoutPrefix(bytes, "\xEF\xBB\xBF"));
  } else if (name == "UTF-16") {
    // Big-endian unless a byte-order mark says little-endian; the mark is not in the text.
    if (bytes.starts_with("\xFF\xFE")) {
      FUZZ_CHECK(encode(text, "UTF-16LE") == bytes.substr(2));
    } else {
      FUZZ_CHECK(encode(text, "UTF-16BE") == withoutPrefix(bytes, "\xFE\xFF"));
    }
  } else if (name == "UTF-16 LE") {
    FUZZ_CHECK(encode(text, "UTF-16LE") == withoutPrefix(bytes, "\xFF\xFE"));
  } else if (name == "UTF-16 BE") {
    FUZZ_CHECK(encode(text, "UTF-16BE") == withoutPrefix(bytes, "\xFE\xFF"));
  } else if (name == "UTF-32") {
    if (bytes.starts_with(std::string_view("\xFF\xFE\0\0", 4))) {
      FUZZ_CHECK(encode(text, "UTF-32LE") == bytes.substr(4));
    } else {
      FUZZ_CHECK(encode(text, "UTF-32BE") ==
                 withoutPrefix(bytes, std::string_view("\0\0\xFE\xFF", 4)));
    }
  } else {
    FUZZ_CHECK(name == "Mac OS Roman");
    FUZZ_CHECK(size % 2 == 1 || !decodeText(bytes, TextEncoding::utf16));
    FUZZ_CHECK(encode(text, "macintosh") == bytes);
  }

  const TextStatistics statistics = computeTextStatistics(text);
  FUZZ_CHECK(statistics.lines >= 1 && statistics.blankLines <= statistics.lines);
  FUZZ_CHECK(statistics.longestLine <= statistics.characters);
  FUZZ_CHECK(statistics.characters <= static_cast<std::int64_t>(text.size()));
  FUZZ_CHECK(statistics.lineEndings == countLineEndings(text));
  FUZZ_CHECK(statistics.lines == static_cast<std::int64_t>(splitLines(text).size()));
  return 0;
}
