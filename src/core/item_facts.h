// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "core/content_type.h"

namespace lumenscribe {

using Timestamp = std::chrono::system_clock::time_point;

/// What the file system says about an item before any content is read. Sizes, dates and
/// kinds follow a symbolic link; `isSymbolicLink` tells whether the path itself is one.
struct ItemFacts {
  std::optional<std::string> name;
  std::optional<std::int64_t> fileSize;
  std::optional<Timestamp> creationDate;
  std::optional<Timestamp> modificationDate;
  std::optional<ContentType> contentType;
  bool isRegularFile = false;
  bool isDirectory = false;
  bool isPackage = false;
  bool isSymbolicLink = false;
};

}  // namespace lumenscribe
