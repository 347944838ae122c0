// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// Demuxing every packet of any bytes with FFmpeg, as the worker does.
// Seeds: tests/data/type_health/*.ogg, *.flac, *.mp3, *.m4a, *.mp4.
#include <chrono>

#include "decoder/media_demux.h"
#include "fuzz_item.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const lumenscribe::fuzz::FuzzItem item(data, size);
  lumenscribe::decoder::demuxEveryPacket(
      item.bytes(), std::chrono::steady_clock::now() + std::chrono::seconds(5));
  return 0;
}
