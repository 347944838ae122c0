// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace lumenscribe::platform {

/// The first `size` bytes of an open file, read into memory. Read, not mapped: a mapped file
/// that another program truncates during the inspection would end the whole program (SIGBUS)
/// at the next touch of a lost page, and a copy costs the same memory as the touched pages
/// of a mapping would.
class ItemContent {
 public:
  /// Nothing when `fd` cannot be read, the memory cannot be had, or the file has become
  /// shorter than `size` since it was opened; empty content for size 0.
  static std::optional<ItemContent> read(int fd, std::int64_t size);

  std::string_view text() const { return {bytes_.data(), bytes_.size()}; }
  std::span<const std::byte> bytes() const { return std::as_bytes(std::span(bytes_)); }

 private:
  std::vector<char> bytes_;
};

}  // namespace lumenscribe::platform
