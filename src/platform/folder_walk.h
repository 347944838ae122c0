// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/file_descriptor.h"

namespace lumenscribe::platform {

/// One entry met by a FolderWalk. The views stay valid until the walk's next step.
struct FolderEntry {
  enum class Kind { directory, regularFile, symbolicLink, other };

  /// The name as the file system stores it (any bytes but "/" and NUL).
  std::string_view name;
  /// The folders between the walked folder and the entry: "" or "Photos/2024/".
  std::string_view parentPath;
  Kind kind = Kind::other;
  /// The size of anything but a directory, from its own status (a link's, not its target's).
  std::int64_t size = 0;
  /// A regular file that this process's user may execute (access(2) with X_OK).
  bool isExecutable = false;

  bool isDirectory() const { return kind == Kind::directory; }
};

/// Walks everything beneath a folder, depth first, each folder's entries before the next
/// sibling's, without opening any file and without following any symbolic link.
///
///     FolderWalk walk(item.descriptor());
///     while (const FolderEntry* entry = walk.next()) {
///       if (entry->isDirectory() && isPackage(entry->name)) walk.skipContents();
///     }
///
/// Every step is relative to the descriptor of the folder above it (openat and fstatat with
/// O_NOFOLLOW and AT_SYMLINK_NOFOLLOW), so renaming the walked folder or swapping a folder
/// inside it for a symbolic link during the walk cannot send the walk anywhere else: a link
/// is an entry like a file, never a way in. Entries that vanish or cannot be read are
/// skipped and the walk goes on; so are the contents of a folder that cannot be opened.
///
/// Memory does not grow with the number of entries: at most kMaxOpenFolders folders are open
/// at once (deeper ones close their shallowest ancestors and reopen them through ".." on the
/// way back up, checking that each is still the same folder), each with one read buffer.
class FolderWalk {
 public:
  /// Walks the folder open as `folderFd`. It reads through an open of its own, so the
  /// descriptor's offset never moves.
  explicit FolderWalk(int folderFd);
  ~FolderWalk();
  FolderWalk(const FolderWalk&) = delete;
  FolderWalk& operator=(const FolderWalk&) = delete;

  /// False when the folder cannot be listed at all; the walk then has no entries.
  bool isListable() const { return listable_; }

  /// The next entry, or null at the end. A directory just returned is entered on the next
  /// call unless skipContents() is called first.
  const FolderEntry* next();
  /// Leaves the contents of the directory just returned alone.
  void skipContents() { pendingFolder_ = nullptr; }

  static constexpr std::size_t kMaxOpenFolders = 32;

 private:
  struct Frame;

  bool readMore(Frame& frame);
  void descendInto(const char* name);
  void leaveFolder();
  bool reopen(std::size_t index, int childFd);

  int rootFd_;
  bool listable_ = false;
  // The folders from the walked one down to the one being read; those before firstOpen_
  // are closed until the walk comes back up to them.
  std::vector<std::unique_ptr<Frame>> frames_;
  std::size_t firstOpen_ = 0;
  // The device and inode of every folder in frames_.
  std::set<std::pair<dev_t, ino_t>> ancestors_;
  // The directory just returned, entered at the next step unless skipped. Its name lives
  // in the parent's read buffer, which the next step reads no further before entering.
  const char* pendingFolder_ = nullptr;
  dev_t pendingDevice_ = 0;
  ino_t pendingInode_ = 0;
  std::string path_;
  FolderEntry entry_;
};

}  // namespace lumenscribe::platform
