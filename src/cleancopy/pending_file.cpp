// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "cleancopy/pending_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "core/path_text.h"
#include "platform/random.h"

namespace lumenscribe {

namespace {

// New files get what the user's umask leaves of read and write for everyone, as any saved
// document does.
constexpr mode_t kNewFileMode = 0666;
// Tries at a free random name before giving up (each a 48-bit chance of a clash).
constexpr int kNameAttempts = 16;

std::error_code lastError() { return {errno, std::system_category()}; }

std::string hiddenNameFor(const std::string& name) {
  std::byte random[6];
  platform::fillRandom(random);
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string suffix;
  for (const std::byte byte : random) {
    suffix.push_back(kDigits[std::to_integer<unsigned>(byte) >> 4]);
    suffix.push_back(kDigits[std::to_integer<unsigned>(byte) & 0x0F]);
  }
  // Short enough that the hidden name stays within the 255 bytes a name may have.
  return "." + name.substr(0, 200) + "." + suffix + ".part";
}

}  // namespace

Expected<PendingFile> PendingFile::create(const std::filesystem::path& destination) {
  PendingFile file;
  file.name_ = lastPathComponent(destination);
  if (file.name_.empty() || file.name_ == "." || file.name_ == "..") {
    return std::make_error_code(std::errc::is_a_directory);
  }
  std::filesystem::path folder = destination.parent_path();
  if (folder.empty()) folder = ".";
  file.folder_ = platform::UniqueFd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!file.folder_) return lastError();
  struct stat existing {};
  if (::fstatat(file.folder_.get(), file.name_.c_str(), &existing, 0) == 0 &&
      S_ISDIR(existing.st_mode)) {
    return std::make_error_code(std::errc::is_a_directory);
  }

  file.file_ = platform::UniqueFd(
      ::openat(file.folder_.get(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, kNewFileMode));
  if (file.file_) return file;
  // Kernels and file systems without unnamed files say so with one of these.
  if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL) return lastError();
  for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
    std::string hidden = hiddenNameFor(file.name_);
    file.file_ = platform::UniqueFd(::openat(file.folder_.get(), hidden.c_str(),
                                             O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC | O_NOFOLLOW,
                                             kNewFileMode));
    if (file.file_) {
      file.temporaryName_ = std::move(hidden);
      return file;
    }
    if (errno != EEXIST) return lastError();
  }
  return std::make_error_code(std::errc::file_exists);
}

PendingFile::PendingFile(PendingFile&& other) noexcept
    : folder_(std::move(other.folder_)),
      file_(std::move(other.file_)),
      name_(std::move(other.name_)),
      temporaryName_(std::exchange(other.temporaryName_, {})),
      size_(other.size_),
      error_(other.error_),
      committed_(other.committed_) {}

PendingFile::~PendingFile() {
  if (!committed_ && !temporaryName_.empty() && folder_) {
    ::unlinkat(folder_.get(), temporaryName_.c_str(), 0);
  }
}

bool PendingFile::append(std::span<const std::byte> bytes) {
  while (!error_ && !bytes.empty()) {
    const ssize_t written = ::pwrite(file_.get(), bytes.data(), bytes.size(), size_);
    if (written < 0) {
      if (errno == EINTR) continue;
      error_ = lastError();
      break;
    }
    size_ += written;
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return !error_;
}

Expected<platform::UniqueFd> PendingFile::openForReading() const {
  if (!temporaryName_.empty()) {
    platform::UniqueFd fd(
        ::openat(folder_.get(), temporaryName_.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (!fd) return lastError();
    return fd;
  }
  // A new open file description, read-only, of the unnamed file.
  const std::string self = "/proc/self/fd/" + std::to_string(file_.get());
  platform::UniqueFd fd(::open(self.c_str(), O_RDONLY | O_CLOEXEC));
  if (!fd) return lastError();
  return fd;
}

std::error_code PendingFile::linkUnderTemporaryName(std::string& name) {
  const std::string self = "/proc/self/fd/" + std::to_string(file_.get());
  for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
    name = hiddenNameFor(name_);
    // Linking the descriptor itself needs a capability ordinary users lack; its /proc link
    // does the same for anyone.
    if (::linkat(file_.get(), "", folder_.get(), name.c_str(), AT_EMPTY_PATH) == 0) return {};
    if (errno == EEXIST) continue;
    if (::linkat(AT_FDCWD, self.c_str(), folder_.get(), name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
      return {};
    }
    if (errno != EEXIST) return lastError();
  }
  return std::make_error_code(std::errc::file_exists);
}

std::error_code PendingFile::commit() {
  if (error_) return error_;
  if (committed_) return {};
  if (::fsync(file_.get()) != 0) return error_ = lastError();
  std::string linked = temporaryName_;
  if (linked.empty()) {
    if (const auto error = linkUnderTemporaryName(linked)) return error_ = error;
  }
  if (::renameat(folder_.get(), linked.c_str(), folder_.get(), name_.c_str()) != 0) {
    error_ = lastError();
    ::unlinkat(folder_.get(), linked.c_str(), 0);
    temporaryName_.clear();
    return error_;
  }
  committed_ = true;
  temporaryName_.clear();
  // The new name itself survives a power cut only once the folder is on the disk too.
  ::fsync(folder_.get());
  return {};
}

}  // namespace lumenscribe
