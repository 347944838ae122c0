// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "platform/decoder_client.h"
#include "platform/opened_item.h"

namespace lumenscribe::test {

/// A fresh directory under the system's temp folder, removed with everything in it.
class TempDir {
 public:
  TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "lumenscribe-test-XXXXXX");
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    path_ = pattern;
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all,
                                 std::filesystem::perm_options::add, ignored);
    std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& path() const { return path_; }

  /// Writes `content` to a file named `name` inside the directory and returns its path.
  std::filesystem::path write(std::string_view name, std::string_view content) const {
    const auto file = path_ / std::string(name);
    std::ofstream(file, std::ios::binary)
        .write(content.data(), static_cast<std::streamsize>(content.size()));
    return file;
  }

 private:
  std::filesystem::path path_;
};

/// Root reads everything, so permission tests only mean something for other users.
inline bool runningAsRoot() { return ::geteuid() == 0; }

/// The item at `path`, opened as the driver opens it; aborts the test program when it
/// cannot be (tests open only what they made).
inline platform::OpenedItem openedItem(const std::filesystem::path& path) {
  auto item = platform::openItem(path);
  if (!item) std::abort();
  return std::move(item).value();
}

/// One decoder worker for the whole test program, started on first use.
inline platform::DecoderClient& sharedDecoder() {
  static platform::DecoderClient decoder;
  return decoder;
}

}  // namespace lumenscribe::test
