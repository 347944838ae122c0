// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>

#include "core/accumulators.h"
#include "core/content_type.h"
#include "platform/opened_item.h"

namespace lumenscribe {

/// The "Type Verification" section: compares what the file name claims (its extension),
/// what the desktop's type for the file says (`platformType`, as the driver read it) and
/// what the first bytes show. The platform type can clear a suspicion that the extension
/// raises, never raise one by itself. Adds the section, five "Type Verification ..." raw
/// entries, the summary item and at most one finding (a warning for a mismatch, a note
/// for a known format behind a name without an extension).
void verifyFileType(const platform::OpenedItem& item, Accumulators& accumulators);

/// The same from its parts: the name in `url`, the file's first bytes in `head` and the
/// desktop's type for it.
void verifyFileType(const std::filesystem::path& url, std::span<const std::byte> head,
                    const std::optional<ContentType>& platformType, Accumulators& accumulators);

}  // namespace lumenscribe
