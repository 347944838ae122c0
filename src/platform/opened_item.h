// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/item_facts.h"
#include "lumenscribe/expected.h"
#include "platform/file_descriptor.h"

namespace lumenscribe::platform {

/// Owner, group and mode of the dropped path itself: of the link when it is a symbolic
/// link, of the file otherwise.
struct PathAttributes {
  uid_t owner = 0;
  gid_t group = 0;
  mode_t mode = 0;
};

/// One dropped item, opened once. Every analyzer reads through `descriptor()` and never
/// opens the path again, so an item renamed or replaced after the open is still the one
/// inspected, and nothing reads past `size()`, so one that grows is read as it was.
///
///     auto item = platform::openItem("/home/me/Downloads/invoice.pdf");
///     if (!item) return item.error();
///     fingerprintOf(*item);  // the same bytes the PDF check and the MIME sniffing saw
class OpenedItem {
 public:
  /// The path as dropped: for display and for what a user must be shown, never for reading.
  const std::filesystem::path& url() const { return url_; }
  /// The facts of the opened file (of the path, when it could not be opened).
  const ItemFacts& facts() const { return facts_; }
  const std::optional<ContentType>& contentType() const { return facts_.contentType; }
  const PathAttributes& attributes() const { return attributes_; }

  /// Read-only descriptor of the file or folder; -1 when it could not be opened.
  int descriptor() const { return fd_.get(); }
  bool isReadable() const { return static_cast<bool>(fd_); }
  /// The bytes every analyzer may read: the file's size when it was opened (0 for folders).
  std::int64_t size() const { return facts_.fileSize.value_or(0); }
  /// The first bytes, read once at the open (at most kHeadSize): what the content type, the
  /// content signature and the health check judge from.
  std::span<const std::byte> head() const { return head_; }

  /// As much as the MIME database sniffs of a file.
  static constexpr std::size_t kHeadSize = 16 * 1024;

 private:
  friend Expected<OpenedItem> openItem(const std::filesystem::path& path);

  std::filesystem::path url_;
  ItemFacts facts_;
  PathAttributes attributes_;
  UniqueFd fd_;
  std::vector<std::byte> head_;
};

/// Opens `path` once for reading (O_RDONLY|O_CLOEXEC, O_NOATIME where the kernel allows it)
/// and takes its facts from the descriptor. FIFOs, sockets and devices are refused from their
/// status alone, before anything opens them (FileInspectionError::unsupportedFile). Fails with
/// the system's error when the path cannot be stat'ed. A regular file or folder that exists
/// but cannot be opened is still an item: its facts come from the path and it is unreadable.
Expected<OpenedItem> openItem(const std::filesystem::path& path);

/// True for the name of a folder that a Mac presents as one document or program (by its
/// extension: "Tool.app", "Notes.rtfd"); such a folder is a package.
bool isPackageName(std::string_view name);

}  // namespace lumenscribe::platform
