// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <system_error>

#include "lumenscribe/expected.h"
#include "platform/file_descriptor.h"

namespace lumenscribe {

/// A file being written for `destination` that nobody sees until it is complete: an unnamed
/// file (O_TMPFILE) in the destination's folder, given the destination's name in one rename
/// by commit(), so that a reader finds either the old file or the whole new one. Where the
/// file system has no unnamed files (FAT, some network file systems) it is a hidden file
/// beside the destination instead. Dropped without commit(), it leaves nothing behind.
///
///     auto file = PendingFile::create("/home/me/photo-clean.jpg");
///     if (!file) return file.error();
///     file->append(bytes);
///     if (auto error = file->commit()) return error;
class PendingFile {
 public:
  /// Fails with the system's error when the folder cannot take a new file (EACCES, EROFS,
  /// ENOSPC...) or the destination is a folder (EISDIR).
  static Expected<PendingFile> create(const std::filesystem::path& destination);

  PendingFile(PendingFile&& other) noexcept;
  PendingFile& operator=(PendingFile&&) = delete;
  PendingFile(const PendingFile&) = delete;
  ~PendingFile();

  /// Appends bytes; false once any write failed (error() says why).
  bool append(std::span<const std::byte> bytes);
  std::error_code error() const { return error_; }
  /// Bytes appended so far.
  std::int64_t size() const { return size_; }

  /// A read-only descriptor of what was written, to check it before it is kept.
  Expected<platform::UniqueFd> openForReading() const;

  /// Flushes the file to the disk and gives it the destination's name, replacing whatever
  /// had it. After a failure nothing of it is left under any name.
  std::error_code commit();

 private:
  PendingFile() = default;
  std::error_code linkUnderTemporaryName(std::string& name);

  platform::UniqueFd folder_;
  platform::UniqueFd file_;
  std::string name_;  // the destination's name in its folder
  // The name the hidden fallback file has (empty for an unnamed file): removed unless kept.
  std::string temporaryName_;
  std::int64_t size_ = 0;
  std::error_code error_;
  bool committed_ = false;
};

}  // namespace lumenscribe
