// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The decompression test on any bytes, as the worker runs it. The format is the one the
// bytes start like (so the fixtures seed it as they are), else the first byte picks one.
// Seeds: tests/data/type_health/*.gz, *.bz2, *.xz, *.zst.
#include <chrono>
#include <cstring>

#include "decoder/compressed_stream.h"
#include "fuzz_item.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  using lumenscribe::decoder::CompressedFormat;
  const auto startsWith = [&](const char* magic, std::size_t length) {
    return size >= length && std::memcmp(data, magic, length) == 0;
  };
  CompressedFormat format = static_cast<CompressedFormat>(data[0] % 4);
  if (startsWith("\x1f\x8b", 2)) format = CompressedFormat::gzip;
  if (startsWith("BZh", 3)) format = CompressedFormat::bzip2;
  if (startsWith("\xfd"
                 "7zXZ",
                 5))
    format = CompressedFormat::xz;
  if (startsWith("\x28\xb5\x2f\xfd", 4)) format = CompressedFormat::zstd;
  const lumenscribe::fuzz::FuzzItem item(data, size);
  lumenscribe::decoder::testCompressedStream(
      item.bytes(), format, std::chrono::steady_clock::now() + std::chrono::seconds(5));
  return 0;
}
