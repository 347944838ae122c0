// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

#include "core/accumulators.h"

namespace lumenscribe {

/// Lower-case hexadecimal, two digits per byte, no separators.
std::string hexDigest(std::span<const std::uint8_t> bytes);

/// SHA-256 of every byte of the file, streamed in 1 MiB chunks; nothing when the file
/// cannot be opened or any read fails (never the digest of a prefix).
std::optional<std::string> fileFingerprint(const std::filesystem::path& url);

/// The "Identity & Integrity" section: SHA-256, Owner, Group, Permissions, Filesystem Type.
void addIdentityAndIntegrity(const std::filesystem::path& url, Accumulators& accumulators);

}  // namespace lumenscribe
