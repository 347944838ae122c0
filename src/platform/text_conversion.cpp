// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/text_conversion.h"

#include <unicode/ucnv.h>

#include <iterator>
#include <memory>

namespace lumenscribe::platform {

namespace {

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

}  // namespace

std::optional<std::string> convertToUtf8(std::string_view bytes, const char* encoding) {
  const ConverterPtr source = strictConverter(encoding);
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

}  // namespace lumenscribe::platform
