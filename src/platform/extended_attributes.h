// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <string_view>

namespace lumenscribe::platform {

/// Extended attributes by name, their values as raw bytes.
using ExtendedAttributes = std::map<std::string, std::string, std::less<>>;

/// The largest value Linux lets an extended attribute have.
inline constexpr std::size_t kMaxAttributeValue = 64 * 1024;

/// Those of `wanted` that the open file or folder `fd` carries, read through the descriptor
/// (flistxattr, then fgetxattr for each name listed). Nothing on a file system without
/// extended attributes, for an attribute that vanished between the listing and the read,
/// or for -1.
ExtendedAttributes readExtendedAttributes(int fd, std::span<const std::string_view> wanted);

}  // namespace lumenscribe::platform
