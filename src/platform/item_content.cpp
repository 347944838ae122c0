// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/item_content.h"

#include <fcntl.h>

#include <new>

#include "platform/file_descriptor.h"

namespace lumenscribe::platform {

std::optional<ItemContent> ItemContent::read(int fd, std::int64_t size) {
  if (fd < 0 || size < 0 || static_cast<std::uint64_t>(size) > SIZE_MAX / 2) return std::nullopt;
  ItemContent content;
  const auto length = static_cast<std::size_t>(size);
  try {
    content.bytes_.resize(length);
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
  ::posix_fadvise(fd, 0, size, POSIX_FADV_SEQUENTIAL);
  const auto done = readFullyAt(fd, std::as_writable_bytes(std::span(content.bytes_)), 0);
  // A file cut short since it was opened is no longer the item that was inspected.
  if (!done || *done != length) return std::nullopt;
  return content;
}

}  // namespace lumenscribe::platform
