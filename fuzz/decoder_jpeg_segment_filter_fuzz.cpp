// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The JPEG segment filter of the pixel-safe copy over any bytes. What it gives starts with
// the start-of-image marker, is never longer than the input, keeps the input's last scan data
// unchanged, and filtering it again must change nothing.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "decoder/jpeg_segment_filter.h"
#include "fuzz_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lumenscribe::decoder;
  const auto jpeg = std::as_bytes(std::span(data, size));
  const auto filtered = filterJpegSegments(jpeg);
  if (!filtered) return 0;
  FUZZ_CHECK(filtered->size() >= 4 && filtered->size() <= size);
  FUZZ_CHECK(std::to_integer<int>((*filtered)[0]) == 0xFF &&
             std::to_integer<int>((*filtered)[1]) == 0xD8);
  FUZZ_CHECK(filterJpegSegments(*filtered) == filtered);
  return 0;
}
