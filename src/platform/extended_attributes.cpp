// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/extended_attributes.h"

#include <sys/xattr.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <vector>

namespace lumenscribe::platform {

namespace {

// The kernel caps a listing at 64 KiB of names too.
constexpr std::size_t kMaxListing = 64 * 1024;
// A value or listing that keeps changing size while it is read is given up on.
constexpr int kAttempts = 4;

// Asks for the size, then reads into a buffer of that size; again when the value grew in
// between (ERANGE).
template <class Read>
std::optional<std::string> readSized(Read read, std::size_t cap) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const ssize_t size = read(nullptr, 0);
    if (size < 0) return std::nullopt;
    std::string buffer(std::min(static_cast<std::size_t>(size), cap), '\0');
    if (buffer.empty()) return buffer;
    const ssize_t got = read(buffer.data(), buffer.size());
    if (got >= 0) {
      buffer.resize(static_cast<std::size_t>(got));
      return buffer;
    }
    if (errno != ERANGE) return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace

ExtendedAttributes readExtendedAttributes(int fd, std::span<const std::string_view> wanted) {
  ExtendedAttributes attributes;
  if (fd < 0) return attributes;
  // ENOTSUP: the file system keeps none; anything else: none that we may see.
  const auto listing = readSized(
      [fd](char* names, std::size_t size) { return ::flistxattr(fd, names, size); }, kMaxListing);
  if (!listing) return attributes;
  // The listing is names, each ended by a NUL.
  for (std::size_t start = 0; start < listing->size();) {
    std::size_t end = listing->find('\0', start);
    if (end == std::string::npos) end = listing->size();
    const std::string name = listing->substr(start, end - start);
    start = end + 1;
    if (std::find(wanted.begin(), wanted.end(), name) == wanted.end()) continue;
    auto value = readSized(
        [fd, &name](char* buffer, std::size_t size) {
          return ::fgetxattr(fd, name.c_str(), buffer, size);
        },
        kMaxAttributeValue);
    if (value) attributes.insert_or_assign(name, std::move(*value));
  }
  return attributes;
}

}  // namespace lumenscribe::platform
