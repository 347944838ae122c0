// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>

namespace lumenscribe::platform {

/// Owns one file descriptor and closes it on every path.
class UniqueFd {
 public:
  UniqueFd() = default;
  explicit UniqueFd(int fd) : fd_(fd) {}
  UniqueFd(UniqueFd&& other) noexcept : fd_(other.release()) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept;
  UniqueFd(const UniqueFd&) = delete;
  UniqueFd& operator=(const UniqueFd&) = delete;
  ~UniqueFd();

  int get() const { return fd_; }
  explicit operator bool() const { return fd_ >= 0; }
  int release() {
    int fd = fd_;
    fd_ = -1;
    return fd;
  }

 private:
  int fd_ = -1;
};

/// Opens `path` for reading only: O_RDONLY|O_CLOEXEC, plus O_NOATIME where the kernel
/// allows it (we own the file), so that inspecting leaves even the access time alone.
/// Sets errno and returns an empty descriptor on failure.
UniqueFd openForReading(const std::filesystem::path& path);

/// Reads until `buffer` is full or the file ends, retrying on EINTR. Returns the byte
/// count (short only at the end of the file), or nothing on a read error.
std::optional<std::size_t> readFully(int fd, std::span<std::byte> buffer);

/// Like readFully, from `offset`, without moving the file position.
std::optional<std::size_t> readFullyAt(int fd, std::span<std::byte> buffer, std::int64_t offset);

}  // namespace lumenscribe::platform
