// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace lumenscribe::platform {

/// The first `size` bytes of an open file, mapped read-only (never copied) and unmapped on
/// every path. Where the file system refuses to map, the bytes are read into memory instead.
///
/// A file that another program truncates while it is mapped makes the next access to the
/// lost pages fault (SIGBUS), as with any mapped file; the inspected size is taken when the
/// item is opened, so only a truncation during the inspection itself can do this.
class MappedFile {
 public:
  /// Nothing when `fd` is not readable or reading fails; an empty view for size 0.
  static std::optional<MappedFile> map(int fd, std::int64_t size);

  MappedFile(MappedFile&& other) noexcept
      : bytes_(std::exchange(other.bytes_, {})),
        mapped_(std::exchange(other.mapped_, false)),
        copy_(std::move(other.copy_)) {}
  MappedFile& operator=(MappedFile&& other) noexcept;
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;
  ~MappedFile();

  std::string_view text() const { return bytes_; }
  std::span<const std::byte> bytes() const { return std::as_bytes(std::span(bytes_)); }

 private:
  MappedFile() = default;
  void release() noexcept;

  std::string_view bytes_;
  bool mapped_ = false;
  std::vector<char> copy_;  // only when the file could not be mapped
};

}  // namespace lumenscribe::platform
