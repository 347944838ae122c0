// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The image property reader as the decoder worker runs it, over any bytes: libvips reads the
// header, Exiv2 the metadata, and the map goes through the wire form the engine reads back.
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "decoder/image_properties.h"
#include "decoder/request_handler.h"
#include "platform/file_descriptor.h"

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  lumenscribe::decoder::initialiseDecoders();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lumenscribe;
  // The worker gets a descriptor, never a path: a memory file stands in for the item.
  const platform::UniqueFd file(::memfd_create("item", MFD_CLOEXEC));
  if (!file) std::abort();
  for (std::size_t done = 0; done < size;) {
    const ssize_t written = ::write(file.get(), data + done, size - done);
    if (written <= 0) std::abort();
    done += static_cast<std::size_t>(written);
  }
  const auto image =
      decoder::readImageProperties(decoder::ItemBytes{file.get(), static_cast<std::int64_t>(size)});

  platform::decoder::Writer out;
  platform::decoder::write(out, image);
  platform::decoder::Reader in(out.data());
  const auto read = platform::decoder::readImageProperties(in);
  // Every map the worker builds must pass the engine's checks unchanged.
  if (!read || !in.finished() || *read != image) std::abort();
  return 0;
}
