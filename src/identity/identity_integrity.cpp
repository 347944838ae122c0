// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/identity_integrity.h"

#include <fcntl.h>
#include <sys/stat.h>

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

std::optional<std::string> fileFingerprint(const std::filesystem::path& url) {
  platform::UniqueFd fd = platform::openForReading(url);
  if (!fd) return std::nullopt;
  ::posix_fadvise(fd.get(), 0, 0, POSIX_FADV_SEQUENTIAL);

  platform::Sha256 sha;
  if (!sha.valid()) return std::nullopt;
  // One fixed buffer, so memory stays flat however large the file is.
  auto chunk = std::make_unique_for_overwrite<std::byte[]>(kChunkSize);
  for (;;) {
    const auto count = platform::readFully(fd.get(), std::span(chunk.get(), kChunkSize));
    if (!count) return std::nullopt;  // never the digest of a prefix
    if (*count == 0) break;
    if (!sha.update(std::span(chunk.get(), *count))) return std::nullopt;
    if (*count < kChunkSize) break;
  }
  const auto digest = sha.finish();
  if (!digest) return std::nullopt;
  return hexDigest(*digest);
}

void addIdentityAndIntegrity(const std::filesystem::path& url, Accumulators& accumulators) {
  std::vector<InsightRow> rows;
  auto add = [&](const char* label, const char* key, std::string value) {
    accumulators.setRaw(key, value);
    rows.emplace_back(label, std::move(value));
  };

  if (auto fingerprint = fileFingerprint(url)) add("SHA-256", "File SHA-256", *fingerprint);

  // The attributes of the path itself: a symbolic link is reported as the link it is.
  struct stat status {};
  if (::lstat(url.c_str(), &status) == 0) {
    if (auto owner = platform::userName(status.st_uid); owner && !owner->empty()) {
      add("Owner", "File Owner", *owner);
    }
    if (auto group = platform::groupName(status.st_gid); group && !group->empty()) {
      add("Group", "File Group", *group);
    }
    char permissions[16];
    std::snprintf(permissions, sizeof permissions, "%03o",
                  static_cast<unsigned>(status.st_mode & 07777));
    add("Permissions", "File POSIX Permissions", permissions);
    if (auto type = fileTypeName(status.st_mode)) {
      add("Filesystem Type", "File Filesystem Type", *type);
    }
  }

  if (rows.empty()) return;
  accumulators.sections.emplace_back("Identity & Integrity", "fingerprint", std::move(rows));
  accumulators.summaryItems.emplace_back("Identity & Integrity");
}

}  // namespace lumenscribe
