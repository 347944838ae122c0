// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/text_encoding.h"

#include "core/utf8.h"
#include "platform/text_conversion.h"

namespace lumenscribe {

namespace {

constexpr std::string_view kUtf8ByteOrderMark = "\xEF\xBB\xBF";

const char* icuName(TextEncoding encoding) {
  switch (encoding) {
    case TextEncoding::utf8: return "UTF-8";
    case TextEncoding::utf16:
    case TextEncoding::unicode: return "UTF-16";
    case TextEncoding::utf16LittleEndian: return "UTF-16LE";
    case TextEncoding::utf16BigEndian: return "UTF-16BE";
    case TextEncoding::utf32: return "UTF-32";
    case TextEncoding::macOSRoman: return "macintosh";
    case TextEncoding::isoLatin1: return "ISO-8859-1";
  }
  return "";
}

std::string_view nameOf(TextEncoding encoding) {
  for (const CandidateEncoding& candidate : kCandidateEncodings) {
    if (candidate.encoding == encoding) return candidate.name;
  }
  return {};
}

}  // namespace

std::optional<DecodedText> decodeText(std::string_view bytes, TextEncoding encoding) {
  const std::string_view name = nameOf(encoding);
  switch (encoding) {
    case TextEncoding::utf8:
      if (!utf8::isValid(bytes)) return std::nullopt;
      if (bytes.starts_with(kUtf8ByteOrderMark)) bytes.remove_prefix(kUtf8ByteOrderMark.size());
      return DecodedText(name, bytes);
    case TextEncoding::utf16:
    case TextEncoding::unicode:
    case TextEncoding::utf16LittleEndian:
    case TextEncoding::utf16BigEndian:
      // Known before a single unit is converted.
      if (bytes.size() % 2 != 0) return std::nullopt;
      break;
    case TextEncoding::utf32:
      if (bytes.size() % 4 != 0) return std::nullopt;
      break;
    case TextEncoding::macOSRoman:
    case TextEncoding::isoLatin1: break;
  }
  auto text = platform::convertToUtf8(bytes, icuName(encoding));
  if (!text) return std::nullopt;
  // ICU's UTF-16 and UTF-32 take a byte-order mark as one; the fixed byte orders keep it.
  if (text->starts_with(kUtf8ByteOrderMark) &&
      (encoding == TextEncoding::utf16LittleEndian || encoding == TextEncoding::utf16BigEndian)) {
    text->erase(0, kUtf8ByteOrderMark.size());
  }
  return DecodedText(name, std::move(*text));
}

std::optional<DecodedText> detectTextEncoding(std::string_view bytes) {
  for (const CandidateEncoding& candidate : kCandidateEncodings) {
    // The same decoder as UTF-16, so it refuses whatever UTF-16 refused.
    if (candidate.encoding == TextEncoding::unicode) continue;
    if (auto decoded = decodeText(bytes, candidate.encoding)) return decoded;
  }
  return std::nullopt;
}

}  // namespace lumenscribe
