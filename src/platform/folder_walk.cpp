// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/folder_walk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>

namespace lumenscribe::platform {

namespace {

constexpr std::size_t kBufferSize = 32 * 1024;

UniqueFd openFolderAt(int folderFd, const char* name) {
  constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY;
  // Listing a folder would update its access time; leave that alone where we may.
  int fd = ::openat(folderFd, name, flags | O_NOATIME);
  if (fd < 0 && errno == EPERM) fd = ::openat(folderFd, name, flags);
  return UniqueFd(fd);
}

bool isSameFolder(int fd, dev_t device, ino_t inode) {
  struct stat status {};
  return ::fstat(fd, &status) == 0 && S_ISDIR(status.st_mode) && status.st_dev == device &&
         status.st_ino == inode;
}

FolderEntry::Kind kindOf(mode_t mode) {
  if (S_ISDIR(mode)) return FolderEntry::Kind::directory;
  if (S_ISREG(mode)) return FolderEntry::Kind::regularFile;
  if (S_ISLNK(mode)) return FolderEntry::Kind::symbolicLink;
  return FolderEntry::Kind::other;
}

}  // namespace

struct FolderWalk::Frame {
  UniqueFd fd;  // empty while closed to make room for deeper folders
  std::unique_ptr<std::byte[]> buffer;
  std::size_t filled = 0;
  std::size_t offset = 0;
  off_t resumeAt = 0;  // the folder's offset after the last record taken from it
  bool done = false;
  dev_t device = 0;
  ino_t inode = 0;
  std::string name;              // within its parent; empty for the walked folder
  std::size_t parentLength = 0;  // path_'s length before this folder's name was added
  // After a reopen, the subfolder the walk came back from: met again, it shows that the
  // file system did not resume where asked, and the rest of this folder is given up
  // rather than walked twice (or for ever).
  std::string resumedAfter;

  void startReading(UniqueFd folder) {
    fd = std::move(folder);
    buffer = std::make_unique_for_overwrite<std::byte[]>(kBufferSize);
    filled = offset = 0;
  }
  void stopReading() {
    fd = UniqueFd();
    buffer.reset();
    filled = offset = 0;
  }
};

FolderWalk::FolderWalk(int folderFd) : rootFd_(folderFd) {
  if (folderFd < 0) return;
  // "." opens the same folder afresh: reading through a dup would move the caller's offset.
  UniqueFd fd = openFolderAt(folderFd, ".");
  struct stat status {};
  if (!fd || ::fstat(fd.get(), &status) != 0) return;
  auto root = std::make_unique<Frame>();
  root->device = status.st_dev;
  root->inode = status.st_ino;
  root->startReading(std::move(fd));
  listable_ = readMore(*root);
  if (!listable_) return;
  ancestors_.insert({root->device, root->inode});
  frames_.push_back(std::move(root));
}

FolderWalk::~FolderWalk() = default;

bool FolderWalk::readMore(Frame& frame) {
  for (;;) {
    const ssize_t count = ::getdents64(frame.fd.get(), frame.buffer.get(), kBufferSize);
    if (count < 0 && errno == EINTR) continue;
    frame.offset = 0;
    frame.filled = count > 0 ? static_cast<std::size_t>(count) : 0;
    if (count <= 0) frame.done = true;
    return count >= 0;
  }
}

const FolderEntry* FolderWalk::next() {
  if (pendingFolder_ != nullptr) {
    const char* name = pendingFolder_;
    pendingFolder_ = nullptr;
    descendInto(name);
  }
  while (!frames_.empty()) {
    Frame& frame = *frames_.back();
    if (frame.offset >= frame.filled && (frame.done || !readMore(frame) || frame.filled == 0)) {
      leaveFolder();
      continue;
    }
    // Records are read field by field: the buffer holds bytes, not dirent64 objects.
    const std::byte* record = frame.buffer.get() + frame.offset;
    unsigned short length = 0;
    std::memcpy(&length, record + offsetof(dirent64, d_reclen), sizeof length);
    if (length <= offsetof(dirent64, d_name) || length > frame.filled - frame.offset) {
      frame.done = true;  // a malformed record: the kernel's buffer is not to be trusted further
      frame.filled = frame.offset;
      continue;
    }
    std::memcpy(&frame.resumeAt, record + offsetof(dirent64, d_off), sizeof frame.resumeAt);
    frame.offset += length;
    const char* name = reinterpret_cast<const char*>(record + offsetof(dirent64, d_name));
    if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0) continue;
    if (!frame.resumedAfter.empty() && frame.resumedAfter == name) {
      frame.done = true;
      frame.filled = frame.offset;
      continue;
    }

    struct stat status {};
    if (::fstatat(frame.fd.get(), name, &status, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) != 0) {
      continue;  // gone, or not ours to see: the walk goes on without it
    }
    entry_ = FolderEntry{};
    entry_.name = name;
    entry_.parentPath = path_;
    entry_.kind = kindOf(status.st_mode);
    if (entry_.isDirectory()) {
      pendingFolder_ = name;
      pendingDevice_ = status.st_dev;
      pendingInode_ = status.st_ino;
    } else {
      entry_.size = status.st_size;
      // Only a file with an execute bit can pass; the bits alone would ignore ACLs, mount
      // options and who we are.
      entry_.isExecutable = S_ISREG(status.st_mode) &&
                            (status.st_mode & (S_IXUSR | S_IXGRP | S_IXOTH)) != 0 &&
                            ::faccessat(frame.fd.get(), name, X_OK, AT_SYMLINK_NOFOLLOW) == 0;
    }
    return &entry_;
  }
  return nullptr;
}

void FolderWalk::descendInto(const char* name) {
  Frame& parent = *frames_.back();
  UniqueFd fd = openFolderAt(parent.fd.get(), name);
  // A folder swapped for another between its status and its open is not the one counted;
  // one that is its own ancestor (a bind mount inside itself) would never end.
  if (!fd || !isSameFolder(fd.get(), pendingDevice_, pendingInode_)) return;
  if (!ancestors_.insert({pendingDevice_, pendingInode_}).second) return;
  auto frame = std::make_unique<Frame>();
  frame->device = pendingDevice_;
  frame->inode = pendingInode_;
  frame->name = name;
  frame->parentLength = path_.size();
  frame->startReading(std::move(fd));
  path_ += name;
  path_ += '/';
  frames_.push_back(std::move(frame));
  if (frames_.size() - firstOpen_ > kMaxOpenFolders) {
    frames_[firstOpen_]->stopReading();
    ++firstOpen_;
  }
}

void FolderWalk::leaveFolder() {
  const std::unique_ptr<Frame> finished = std::move(frames_.back());
  frames_.pop_back();
  ancestors_.erase({finished->device, finished->inode});
  path_.resize(finished->parentLength);
  if (frames_.empty() || firstOpen_ < frames_.size()) return;
  firstOpen_ = frames_.size() - 1;
  Frame& parent = *frames_.back();
  if (reopen(firstOpen_, finished->fd.get())) {
    parent.resumedAfter = finished->name;
  } else {
    parent.done = true;
  }
}

bool FolderWalk::reopen(std::size_t index, int childFd) {
  Frame& frame = *frames_[index];
  UniqueFd fd;
  // Up through ".." first: one step however deep. The check catches a subtree moved
  // elsewhere meanwhile; then the way down from the walked folder is tried instead.
  if (childFd >= 0) fd = openFolderAt(childFd, "..");
  if (!fd || !isSameFolder(fd.get(), frame.device, frame.inode)) {
    fd = openFolderAt(rootFd_, ".");
    for (std::size_t i = 0; fd && i <= index; ++i) {
      if (i > 0) fd = openFolderAt(fd.get(), frames_[i]->name.c_str());
      if (fd && !isSameFolder(fd.get(), frames_[i]->device, frames_[i]->inode)) fd = UniqueFd();
    }
  }
  if (!fd || ::lseek(fd.get(), frame.resumeAt, SEEK_SET) < 0) return false;
  frame.startReading(std::move(fd));
  return true;
}

}  // namespace lumenscribe::platform
