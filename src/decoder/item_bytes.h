// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <vips/vips.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace lumenscribe::decoder {

/// The inspected item as the engine opened it: a descriptor and the size it had then.
/// Nothing past `size` is ever read, so a file that grows during the inspection is decoded
/// as it was when it was opened.
struct ItemBytes {
  int fd = -1;
  std::int64_t size = 0;

  /// Up to `count` bytes from `offset`, stopping at `size`; nothing on a read error.
  std::optional<std::vector<std::byte>> read(std::int64_t offset, std::size_t count) const;
};

struct GObjectUnref {
  void operator()(gpointer object) const noexcept {
    if (object != nullptr) g_object_unref(object);
  }
};
using SourcePtr = std::unique_ptr<VipsSource, GObjectUnref>;
using ImagePtr = std::unique_ptr<VipsImage, GObjectUnref>;

/// A libvips source over the item: reads with pread from its own position, so the
/// descriptor's file offset is never touched, and ends at the item's size.
SourcePtr vipsSourceFor(const ItemBytes& item);

/// The item mapped read-only into memory, unmapped on every path.
class MappedItem {
 public:
  /// Nothing when the item is empty or cannot be mapped (too large for the address space).
  static std::optional<MappedItem> map(const ItemBytes& item);

  MappedItem(MappedItem&& other) noexcept : bytes_(std::exchange(other.bytes_, {})) {}
  MappedItem& operator=(MappedItem&& other) noexcept;
  MappedItem(const MappedItem&) = delete;
  ~MappedItem();

  std::span<const char> bytes() const { return bytes_; }

 private:
  explicit MappedItem(std::span<const char> bytes) : bytes_(bytes) {}
  std::span<const char> bytes_;
};

}  // namespace lumenscribe::decoder
