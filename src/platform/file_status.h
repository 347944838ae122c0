// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "core/item_facts.h"
#include "lumenscribe/expected.h"

namespace lumenscribe::platform {

/// The item facts of `path` from statx, following a symbolic link. Birth time is used
/// when the file system reports one (0 counts as none). The content type is looked up
/// only for regular files and directories: nothing ever opens a FIFO or a device.
/// Fails with the system's error when the path cannot be stat'ed.
Expected<ItemFacts> readItemFacts(const std::filesystem::path& path);

}  // namespace lumenscribe::platform
