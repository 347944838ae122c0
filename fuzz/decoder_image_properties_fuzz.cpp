// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The image property reader as the decoder worker runs it, over any bytes: libvips reads the
// header, Exiv2 the metadata, and the map goes through the wire form the engine reads back.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "decoder/image_properties.h"
#include "decoder/request_handler.h"
#include "fuzz_item.h"

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  lumenscribe::decoder::initialiseDecoders();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lumenscribe;
  const fuzz::FuzzItem item(data, size);
  const auto image = decoder::readImageProperties(item.bytes());

  platform::decoder::Writer out;
  platform::decoder::write(out, image);
  platform::decoder::Reader in(out.data());
  const auto read = platform::decoder::readImageProperties(in);
  // Every map the worker builds must pass the engine's checks unchanged.
  if (!read || !in.finished() || *read != image) std::abort();
  return 0;
}
