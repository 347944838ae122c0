// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The PNG chunk filter of the pixel-safe copy over any bytes. What it gives must be a PNG of
// kept chunks only, IHDR first and IEND last, no longer than the input and one eXIf chunk,
// and filtering it again must change nothing.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "decoder/png_chunk_filter.h"
#include "fuzz_check.h"

namespace {

using namespace lumenscribe::decoder;

std::uint32_t bigEndian32(std::span<const std::byte> bytes) {
  std::uint32_t value = 0;
  for (int i = 0; i < 4; ++i) value = value << 8 | std::to_integer<std::uint32_t>(bytes[i]);
  return value;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto png = std::as_bytes(std::span(data, size));
  // The size picks the orientation, so that every seed is tried as it is: 0 and 9 stand for
  // none and for a value out of range.
  const std::optional<std::uint16_t> orientation =
      size % 10 == 0 ? std::nullopt : std::optional<std::uint16_t>(size % 10);
  const auto filtered = filterPngChunks(png, orientation);
  if (!filtered) return 0;
  const bool addsOrientation = orientation && *orientation <= 8;
  FUZZ_CHECK(filtered->size() <= size + (addsOrientation ? 38 : 0));
  FUZZ_CHECK(std::equal(filtered->begin(), filtered->begin() + 8, png.begin()));

  std::string_view first;
  std::string_view last;
  int exifChunks = 0;
  std::size_t at = 8;
  while (at < filtered->size()) {
    FUZZ_CHECK(filtered->size() - at >= 12);
    const std::uint32_t length = bigEndian32(std::span(*filtered).subspan(at));
    FUZZ_CHECK(length <= filtered->size() - at - 12);
    const auto type = std::span(*filtered).subspan(at + 4).first<4>();
    const std::string_view name(reinterpret_cast<const char*>(type.data()), 4);
    if (name == "eXIf") {
      ++exifChunks;
    } else {
      FUZZ_CHECK(isKeptPngChunk(type));
    }
    if (first.empty()) first = name;
    last = name;
    at += 12 + length;
  }
  FUZZ_CHECK(first == "IHDR" && last == "IEND");
  FUZZ_CHECK(exifChunks == (addsOrientation ? 1 : 0));
  FUZZ_CHECK(filterPngChunks(*filtered, orientation) == filtered);
  return 0;
}
