// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/pdf_text.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "core/utf8.h"

namespace lumenscribe::decoder {

namespace {

void appendUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out.push_back(static_cast<char>(c));
  } else if (c < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (c >> 6)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else if (c < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (c >> 12)));
    out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (c >> 18)));
    out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  }
}

// PDFDocEncoding (PDF 32000-1, annex D) where it differs from ISO Latin-1: 0x18 to 0x1F
// and 0x7F to 0xA0, and 0xAD, which it leaves undefined.
constexpr char32_t kUndefined = 0xFFFD;
constexpr std::array<char32_t, 8> kPdfDocLow = {0x02D8, 0x02C7, 0x02C6, 0x02D9,
                                                0x02DD, 0x02DB, 0x02DA, 0x02DC};
constexpr std::array<char32_t, 34> kPdfDocHigh = {
    kUndefined, 0x2022, 0x2020, 0x2021, 0x2026, 0x2014,     0x2013, 0x0192, 0x2044,
    0x2039,     0x203A, 0x2212, 0x2030, 0x201E, 0x201C,     0x201D, 0x2018, 0x2019,
    0x201A,     0x2122, 0xFB01, 0xFB02, 0x0141, 0x0152,     0x0160, 0x0178, 0x017D,
    0x0131,     0x0142, 0x0153, 0x0161, 0x017E, kUndefined, 0x20AC};

char32_t fromPdfDocEncoding(std::uint8_t byte) {
  if (byte >= 0x18 && byte <= 0x1F) return kPdfDocLow[byte - 0x18];
  if (byte >= 0x7F && byte <= 0xA0) return kPdfDocHigh[byte - 0x7F];
  if (byte == 0xAD) return kUndefined;
  return byte;
}

bool isWhiteSpaceOrNewline(char32_t c) {
  // General category Z is stable: Zs, U+2028 (Zl) and U+2029 (Zp).
  return c == ' ' || (c >= 0x09 && c <= 0x0D) || c == 0x85 || c == 0xA0 || c == 0x1680 ||
         (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F ||
         c == 0x3000;
}

}  // namespace

std::string utf8FromUtf16(std::span<const std::uint16_t> units) {
  std::string out;
  out.reserve(units.size() + units.size() / 2);
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char32_t unit = units[i];
    if (unit >= 0xD800 && unit <= 0xDBFF && i + 1 < units.size() && units[i + 1] >= 0xDC00 &&
        units[i + 1] <= 0xDFFF) {
      appendUtf8(out, 0x10000 + ((unit - 0xD800) << 10) + (units[i + 1] - 0xDC00));
      ++i;
    } else if (unit >= 0xD800 && unit <= 0xDFFF) {
      appendUtf8(out, 0xFFFD);
    } else {
      appendUtf8(out, unit);
    }
  }
  return out;
}

std::string infoText(std::span<const std::uint16_t> units) {
  const bool byteString =
      std::all_of(units.begin(), units.end(), [](std::uint16_t u) { return u < 0x100; });
  if (!byteString) return utf8FromUtf16(units);
  std::string bytes(units.size(), '\0');
  std::transform(units.begin(), units.end(), bytes.begin(),
                 [](std::uint16_t u) { return static_cast<char>(u); });
  constexpr std::string_view kUtf8ByteOrderMark = "\xEF\xBB\xBF";
  if (bytes.starts_with(kUtf8ByteOrderMark)) {
    const std::string_view rest = std::string_view(bytes).substr(kUtf8ByteOrderMark.size());
    if (utf8::isValid(rest)) return std::string(rest);
  }
  std::string out;
  out.reserve(bytes.size());
  for (const char byte : bytes)
    appendUtf8(out, fromPdfDocEncoding(static_cast<std::uint8_t>(byte)));
  return out;
}

bool hasVisibleText(std::string_view text) {
  for (std::size_t offset = 0; offset < text.size();) {
    const utf8::CodePoint point = utf8::decodeAt(text, offset);
    if (!isWhiteSpaceOrNewline(point.value)) return true;
    offset += point.length;
  }
  return false;
}

void truncateText(std::string& text, std::size_t maxSize) {
  if (text.size() <= maxSize) return;
  std::size_t end = maxSize;
  // Back to the first byte of the character that would be split.
  while (end > 0 && (static_cast<std::uint8_t>(text[end]) & 0xC0) == 0x80) --end;
  text.resize(end);
}

}  // namespace lumenscribe::decoder
