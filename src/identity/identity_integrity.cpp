// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/identity_integrity.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <memory>

#include "platform/accounts.h"
#include "platform/file_descriptor.h"
#include "platform/sha256.h"

namespace lumenscribe {

namespace {

constexpr std::size_t kChunkSize = 1024 * 1024;

// The file system's name for a kind of item, as the Identity section shows it.
std::optional<std::string> fileTypeName(mode_t mode) {
  if (S_ISREG(mode)) return "Regular file";
  if (S_ISLNK(mode)) return "Symbolic link";
  if (S_ISDIR(mode)) return "Directory";
  return std::nullopt;
}

}  // namespace

std::string hexDigest(std::span<const std::uint8_t> bytes) {
  static constexpr char digits[] = "0123456789abcdef";
  std::string text;
  text.reserve(bytes.size() * 2);
  for (auto byte : bytes) {
    text.push_back(digits[byte >> 4]);
    text.push_back(digits[byte & 0x0F]);
  }
  return text;
}

std::optional<std::string> fingerprintOf(int fd, std::int64_t size,
                                         const InspectionControl& control) {
  if (fd < 0 || size < 0) return std::nullopt;
  ::posix_fadvise(fd, 0, size, POSIX_FADV_SEQUENTIAL);

  platform::Sha256 sha;
  if (!sha.valid()) return std::nullopt;
  // One fixed buffer, so memory stays flat however large the file is.
  auto chunk = std::make_unique_for_overwrite<std::byte[]>(kChunkSize);
  for (std::int64_t offset = 0; offset < size;) {
    if (control.stopRequested()) return std::nullopt;
    const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(kChunkSize, size - offset));
    const auto count = platform::readFullyAt(fd, std::span(chunk.get(), wanted), offset);
    // A read error, or a file that shrank since it was opened: never the digest of a prefix.
    if (!count || *count < wanted) return std::nullopt;
    if (!sha.update(std::span(chunk.get(), *count))) return std::nullopt;
    offset += static_cast<std::int64_t>(*count);
    if (control.onBytesRead) control.onBytesRead(offset, size);
  }
  const auto digest = sha.finish();
  if (!digest) return std::nullopt;
  return hexDigest(*digest);
}

std::optional<std::string> fileFingerprint(const std::filesystem::path& url) {
  const platform::UniqueFd fd = platform::openForReading(url);
  struct stat status {};
  if (!fd || ::fstat(fd.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return fingerprintOf(fd.get(), status.st_size);
}

void addIdentityAndIntegrity(const platform::OpenedItem& item, Accumulators& accumulators,
                             const InspectionControl& control) {
  std::vector<InsightRow> rows;
  auto add = [&](const char* label, const char* key, std::string value) {
    accumulators.setRaw(key, value);
    rows.emplace_back(label, std::move(value));
  };

  if (auto fingerprint = fingerprintOf(item.descriptor(), item.size(), control)) {
    add("SHA-256", "File SHA-256", *fingerprint);
  }

  // The attributes of the path itself: a symbolic link is reported as the link it is.
  const platform::PathAttributes& attributes = item.attributes();
  if (auto owner = platform::userName(attributes.owner); owner && !owner->empty()) {
    add("Owner", "File Owner", *owner);
  }
  if (auto group = platform::groupName(attributes.group); group && !group->empty()) {
    add("Group", "File Group", *group);
  }
  char permissions[16];
  std::snprintf(permissions, sizeof permissions, "%03o",
                static_cast<unsigned>(attributes.mode & 07777));
  add("Permissions", "File POSIX Permissions", permissions);
  if (auto type = fileTypeName(attributes.mode)) {
    add("Filesystem Type", "File Filesystem Type", *type);
  }

  if (rows.empty()) return;
  accumulators.sections.emplace_back("Identity & Integrity", "fingerprint", std::move(rows));
  accumulators.summaryItems.emplace_back("Identity & Integrity");
}

}  // namespace lumenscribe
