// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/file_status.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

#include "core/path_text.h"
#include "platform/mime_database.h"

namespace lumenscribe::platform {

namespace {

// Directories that a Mac presents as single items; Linux file managers show them as
// folders, but their contents are one document or one program.
constexpr std::array<std::string_view, 18> kPackageExtensions = {
    "app",     "bundle",   "framework",     "plugin",     "kext",        "appex",
    "xpc",     "prefpane", "qlgenerator",   "mdimporter", "rtfd",        "pages",
    "numbers", "key",      "photoslibrary", "xcodeproj",  "xcworkspace", "playground"};

Timestamp timestampOf(const statx_timestamp& stamp) {
  return Timestamp(std::chrono::duration_cast<Timestamp::duration>(
      std::chrono::seconds(stamp.tv_sec) + std::chrono::nanoseconds(stamp.tv_nsec)));
}

std::error_code lastError() { return {errno, std::system_category()}; }

}  // namespace

Expected<ItemFacts> readItemFacts(const std::filesystem::path& path) {
  struct statx link {};
  if (::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_TYPE, &link) !=
      0) {
    return lastError();
  }
  struct statx status {};
  constexpr unsigned mask = STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_MTIME | STATX_BTIME;
  if (::statx(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT, mask, &status) != 0) return lastError();

  ItemFacts facts;
  facts.name = validUtf8(lastPathComponent(path));
  facts.isSymbolicLink = S_ISLNK(link.stx_mode);
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
  if (facts.isDirectory) {
    const std::string extension = asciiLower(pathExtension(path));
    facts.isPackage = std::find(kPackageExtensions.begin(), kPackageExtensions.end(), extension) !=
                      kPackageExtensions.end();
    facts.contentType = directoryContentType();
  } else if (facts.isRegularFile) {
    facts.contentType = contentTypeForFile(path);
  }
  return facts;
}

}  // namespace lumenscribe::platform
