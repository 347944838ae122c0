// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>

#include "decoder/item_bytes.h"
#include "platform/file_descriptor.h"

namespace lumenscribe::fuzz {

/// The fuzzer's bytes as the worker sees an item: a descriptor (of an in-memory file) and
/// its size.
class FuzzItem {
 public:
  FuzzItem(const std::uint8_t* data, std::size_t size)
      : fd_(::memfd_create("lumenscribe-fuzz", MFD_CLOEXEC)) {
    std::size_t written = 0;
    while (fd_ && written < size) {
      const ssize_t count = ::write(fd_.get(), data + written, size - written);
      if (count <= 0) break;
      written += static_cast<std::size_t>(count);
    }
    size_ = static_cast<std::int64_t>(written);
  }
  decoder::ItemBytes bytes() const { return {fd_.get(), size_}; }

 private:
  platform::UniqueFd fd_;
  std::int64_t size_ = 0;
};

}  // namespace lumenscribe::fuzz
