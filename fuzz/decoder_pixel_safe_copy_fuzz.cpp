// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The pixel-safe copy as the decoder worker makes it, over any bytes taken for the format
// their first bytes claim: Exiv2 rewrites a JPEG or WebP in memory (the JPEG then goes
// through the segment filter), the chunk filter a PNG. Whatever the rewrite gives must not
// be longer than the input by more than a little metadata, and must start as its format does.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "decoder/pixel_safe_copy.h"
#include "decoder/request_handler.h"
#include "fuzz_check.h"
#include "fuzz_item.h"

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  lumenscribe::decoder::initialiseDecoders();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lumenscribe;
  using platform::decoder::ImageFormat;
  if (size < 12) return 0;
  ImageFormat format = ImageFormat::other;
  if (data[0] == 0xFF && data[1] == 0xD8) format = ImageFormat::jpeg;
  if (std::memcmp(data, "\x89PNG", 4) == 0) format = ImageFormat::png;
  if (std::memcmp(data, "RIFF", 4) == 0 && std::memcmp(data + 8, "WEBP", 4) == 0) {
    format = ImageFormat::webp;
  }
  if (format == ImageFormat::other) return 0;
  const fuzz::FuzzItem item(data, size);
  const auto copy = decoder::pixelSafeCopy(item.bytes(), format);
  if (!copy) return 0;
  // An orientation is all that may be added: an EXIF block of one entry and its framing.
  FUZZ_CHECK(copy->size() <= size + 128);
  FUZZ_CHECK(copy->size() >= 4 && std::memcmp(copy->data(), data, 2) == 0);
  return 0;
}
