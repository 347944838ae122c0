// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace lumenscribe::platform {

/// Account names from the system's user and group databases (thread-safe lookups);
/// nothing when the database has no entry.
std::optional<std::string> userName(uid_t uid);
std::optional<std::string> groupName(gid_t gid);

}  // namespace lumenscribe::platform
