// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/mapped_file.h"

#include <sys/mman.h>

#include <cstdint>
#include <new>

#include "platform/file_descriptor.h"

namespace lumenscribe::platform {

std::optional<MappedFile> MappedFile::map(int fd, std::int64_t size) {
  if (fd < 0 || size < 0 || static_cast<std::uint64_t>(size) > SIZE_MAX / 2) return std::nullopt;
  MappedFile file;
  if (size == 0) return file;
  const auto length = static_cast<std::size_t>(size);
  void* start = ::mmap(nullptr, length, PROT_READ, MAP_PRIVATE, fd, 0);
  if (start != MAP_FAILED) {
    file.bytes_ = std::string_view(static_cast<const char*>(start), length);
    file.mapped_ = true;
    return file;
  }
  // Some file systems (FUSE without mmap, a few pseudo file systems) only read.
  try {
    file.copy_.resize(length);
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
  const auto read = readFullyAt(fd, std::as_writable_bytes(std::span(file.copy_)), 0);
  if (!read) return std::nullopt;
  file.copy_.resize(*read);
  file.bytes_ = std::string_view(file.copy_.data(), file.copy_.size());
  return file;
}

void MappedFile::release() noexcept {
  if (mapped_) ::munmap(const_cast<char*>(bytes_.data()), bytes_.size());
  mapped_ = false;
  bytes_ = {};
}

MappedFile& MappedFile::operator=(MappedFile&& other) noexcept {
  if (this != &other) {
    release();
    bytes_ = std::exchange(other.bytes_, {});
    mapped_ = std::exchange(other.mapped_, false);
    copy_ = std::move(other.copy_);
  }
  return *this;
}

MappedFile::~MappedFile() { release(); }

}  // namespace lumenscribe::platform
