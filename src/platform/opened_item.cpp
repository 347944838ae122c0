// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/opened_item.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

#include "core/path_text.h"
#include "lumenscribe/result.h"
#include "platform/mime_database.h"

namespace lumenscribe::platform {

namespace {

// Directories that a Mac presents as single items; Linux file managers show them as
// folders, but their contents are one document or one program.
constexpr std::array<std::string_view, 18> kPackageExtensions = {
    "app",     "bundle",   "framework",     "plugin",     "kext",        "appex",
    "xpc",     "prefpane", "qlgenerator",   "mdimporter", "rtfd",        "pages",
    "numbers", "key",      "photoslibrary", "xcodeproj",  "xcworkspace", "playground"};

constexpr unsigned kFactsMask =
    STATX_TYPE | STATX_MODE | STATX_UID | STATX_GID | STATX_SIZE | STATX_MTIME | STATX_BTIME;

Timestamp timestampOf(const statx_timestamp& stamp) {
  return Timestamp(std::chrono::duration_cast<Timestamp::duration>(
      std::chrono::seconds(stamp.tv_sec) + std::chrono::nanoseconds(stamp.tv_nsec)));
}

std::error_code lastError() { return {errno, std::system_category()}; }

bool isItem(const struct statx& status) {
  return S_ISREG(status.stx_mode) || S_ISDIR(status.stx_mode);
}

UniqueFd openFolder(const std::filesystem::path& path) {
  constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOCTTY;
  int fd = ::open(path.c_str(), flags | O_NOATIME);
  if (fd < 0 && errno == EPERM) fd = ::open(path.c_str(), flags);
  return UniqueFd(fd);
}

ItemFacts factsOf(const std::filesystem::path& path, const struct statx& status) {
  ItemFacts facts;
  facts.name = validUtf8(lastPathComponent(path));
  facts.isRegularFile = S_ISREG(status.stx_mode);
  facts.isDirectory = S_ISDIR(status.stx_mode);
  if (facts.isRegularFile && (status.stx_mask & STATX_SIZE)) {
    facts.fileSize = static_cast<std::int64_t>(status.stx_size);
  }
  if (status.stx_mask & STATX_MTIME) facts.modificationDate = timestampOf(status.stx_mtime);
  // Some file systems flag a birth time of 0 as valid; the epoch is no real creation date.
  if ((status.stx_mask & STATX_BTIME) &&
      (status.stx_btime.tv_sec != 0 || status.stx_btime.tv_nsec != 0)) {
    facts.creationDate = timestampOf(status.stx_btime);
  }
  if (facts.isDirectory) facts.isPackage = isPackageName(lastPathComponent(path));
  return facts;
}

PathAttributes attributesOf(const struct statx& status) {
  return {status.stx_uid, status.stx_gid, status.stx_mode};
}

}  // namespace

bool isPackageName(std::string_view name) {
  const std::string extension = asciiLower(pathExtension(std::string(name)));
  return std::find(kPackageExtensions.begin(), kPackageExtensions.end(), extension) !=
         kPackageExtensions.end();
}

Expected<OpenedItem> openItem(const std::filesystem::path& path) {
  struct statx link {};
  if (::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
              STATX_TYPE | STATX_MODE | STATX_UID | STATX_GID, &link) != 0) {
    return lastError();
  }
  struct statx status {};
  if (::statx(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT, kFactsMask, &status) != 0) {
    return lastError();
  }
  // FIFOs, sockets and devices are refused before any open: opening one could block or
  // have effects of its own.
  if (!isItem(status)) return make_error_code(FileInspectionError::unsupportedFile);

  OpenedItem item;
  item.url_ = path;
  item.fd_ = S_ISDIR(status.stx_mode) ? openFolder(path) : openForReading(path);
  if (item.fd_) {
    // From here on the descriptor is the item: the path may already name something else.
    struct statx opened {};
    if (::statx(item.fd_.get(), "", AT_EMPTY_PATH, kFactsMask, &opened) == 0) status = opened;
    if (!isItem(status)) return make_error_code(FileInspectionError::unsupportedFile);
  }
  item.facts_ = factsOf(path, status);
  item.facts_.isSymbolicLink = S_ISLNK(link.stx_mode);
  item.attributes_ = attributesOf(item.facts_.isSymbolicLink ? link : status);

  if (item.facts_.isDirectory) {
    item.facts_.contentType = directoryContentType();
    return item;
  }
  std::optional<std::size_t> headSize;
  if (item.fd_) {
    item.head_.resize(
        static_cast<std::size_t>(std::min<std::int64_t>(OpenedItem::kHeadSize, item.size())));
    headSize = readFullyAt(item.fd_.get(), item.head_, 0);
    item.head_.resize(headSize.value_or(0));
  }
  // Content that could not be read leaves the name alone to say what the file is.
  const std::string name = lastPathComponent(path);
  item.facts_.contentType =
      headSize ? contentTypeForFile(name, item.head_) : contentTypeForFileName(name);
  return item;
}

}  // namespace lumenscribe::platform
