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
#include "lumenscribe/inspection_control.h"
#include "platform/opened_item.h"

namespace lumenscribe {

/// Lower-case hexadecimal, two digits per byte, no separators.
std::string hexDigest(std::span<const std::uint8_t> bytes);

/// SHA-256 of the first `size` bytes behind `fd`, streamed in 1 MiB chunks from offset 0
/// (the descriptor's position is left alone); nothing when any read fails or the file ends
/// early (never the digest of a prefix). `control` follows the reading and can end it, with
/// no digest.
std::optional<std::string> fingerprintOf(int fd, std::int64_t size,
                                         const InspectionControl& control = {});

/// SHA-256 of every byte of the file at `url`, as fingerprintOf; nothing when it cannot be
/// opened.
std::optional<std::string> fileFingerprint(const std::filesystem::path& url);

/// The "Identity & Integrity" section: SHA-256 of the item as opened, then Owner, Group,
/// Permissions and Filesystem Type of the dropped path itself.
void addIdentityAndIntegrity(const platform::OpenedItem& item, Accumulators& accumulators,
                             const InspectionControl& control = {});

}  // namespace lumenscribe
