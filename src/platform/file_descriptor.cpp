// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/file_descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace lumenscribe::platform {

UniqueFd& UniqueFd::operator=(UniqueFd&& other) noexcept {
  if (this != &other) {
    if (fd_ >= 0) ::close(fd_);
    fd_ = other.release();
  }
  return *this;
}

UniqueFd::~UniqueFd() {
  if (fd_ >= 0) ::close(fd_);
}

UniqueFd openForReading(const std::filesystem::path& path) {
  // O_NONBLOCK keeps an open from waiting should the path have turned into a FIFO since it
  // was stat'ed; it changes nothing for regular files.
  constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
  int fd = ::open(path.c_str(), flags | O_NOATIME);
  // O_NOATIME is refused with EPERM on files we do not own; read them the ordinary way.
  if (fd < 0 && errno == EPERM) fd = ::open(path.c_str(), flags);
  if (fd >= 0) {
    const int status = ::fcntl(fd, F_GETFL);
    if (status >= 0) ::fcntl(fd, F_SETFL, status & ~O_NONBLOCK);
  }
  return UniqueFd(fd);
}

namespace {

// Calls `readSome(buffer, offsetSoFar)` until the buffer is full or the file ends.
template <class ReadSome>
std::optional<std::size_t> fill(std::span<std::byte> buffer, ReadSome readSome) {
  std::size_t done = 0;
  while (done < buffer.size()) {
    const ssize_t count = readSome(buffer.subspan(done), done);
    if (count < 0) {
      if (errno == EINTR) continue;
      return std::nullopt;
    }
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

}  // namespace

std::optional<std::size_t> readFully(int fd, std::span<std::byte> buffer) {
  return fill(buffer, [fd](std::span<std::byte> rest, std::size_t) {
    return ::read(fd, rest.data(), rest.size());
  });
}

std::optional<std::size_t> readFullyAt(int fd, std::span<std::byte> buffer, std::int64_t offset) {
  if (offset < 0) return std::nullopt;
  return fill(buffer, [fd, offset](std::span<std::byte> rest, std::size_t done) {
    return ::pread(fd, rest.data(), rest.size(),
                   static_cast<off_t>(offset + static_cast<std::int64_t>(done)));
  });
}

}  // namespace lumenscribe::platform
