// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/text_encoding.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <memory>

#include "core/utf8.h"

namespace lumenscribe {

namespace {

constexpr std::string_view kUtf8ByteOrderMark = "\xEF\xBB\xBF";

struct ConverterClose {
  void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
};
using ConverterPtr = std::unique_ptr<UConverter, ConverterClose>;

// A converter that stops at the first byte sequence it cannot map, instead of writing a
// substitute for it.
ConverterPtr strictConverter(const char* name) {
  UErrorCode status = U_ZERO_ERROR;
  ConverterPtr converter(ucnv_open(name, &status));
  if (U_FAILURE(status)) return nullptr;
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &status);
  if (U_FAILURE(status)) return nullptr;
  return converter;
}

// `bytes` in the ICU encoding `name` as UTF-8, or nothing at the first sequence that is not
// text in it (a sequence cut short at the end included).
std::optional<std::string> convertToUtf8(std::string_view bytes, const char* name) {
  const ConverterPtr source = strictConverter(name);
  const ConverterPtr target = strictConverter("UTF-8");
  if (!source || !target) return std::nullopt;

  std::string out;
  // Most text grows little; the buffer grows when it does.
  out.resize(bytes.size() + bytes.size() / 2 + 16);
  std::size_t written = 0;
  const char* input = bytes.data();
  const char* const inputEnd = bytes.data() + bytes.size();
  UChar pivot[4096];
  UChar* pivotSource = pivot;
  UChar* pivotTarget = pivot;
  bool reset = true;
  for (;;) {
    char* output = out.data() + written;
    UErrorCode status = U_ZERO_ERROR;
    ucnv_convertEx(target.get(), source.get(), &output, out.data() + out.size(), &input, inputEnd,
                   pivot, &pivotSource, &pivotTarget, pivot + std::size(pivot), reset, true,
                   &status);
    reset = false;
    written = static_cast<std::size_t>(output - out.data());
    if (status == U_BUFFER_OVERFLOW_ERROR) {
      out.resize(out.size() + out.size() / 2 + 16);
      continue;
    }
    if (U_FAILURE(status)) return std::nullopt;
    break;
  }
  out.resize(written);
  return out;
}

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
  auto text = convertToUtf8(bytes, icuName(encoding));
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
