// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <sys/stat.h>

#include <filesystem>

#include "decoder/item_bytes.h"
#include "platform/file_descriptor.h"

namespace lumenscribe::decoder::test {

inline const std::filesystem::path kHealthFixtures =
    std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health";

/// A fixture opened the way the engine hands it to the worker: a descriptor and its size.
struct OpenFixture {
  explicit OpenFixture(const std::filesystem::path& path) : fd(platform::openForReading(path)) {
    struct stat status {};
    if (fd && ::fstat(fd.get(), &status) == 0) size = status.st_size;
  }
  ItemBytes bytes() const { return {fd.get(), size}; }

  platform::UniqueFd fd;
  std::int64_t size = 0;
};

}  // namespace lumenscribe::decoder::test
