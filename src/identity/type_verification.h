// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>

#include "core/accumulators.h"
#include "core/content_type.h"
#include "identity/content_signature.h"
#include "platform/opened_item.h"

namespace lumenscribe {

/// The "Type Verification" section: compares what the file name claims (every type its
/// extension may stand for), what the desktop's type for the file says (`platformType`, as
/// the driver read it) and what the content is. The platform type can clear a suspicion
/// that the name raises, never raise one by itself. Adds the section, five "Type
/// Verification ..." raw entries, the summary item and at most one finding (a warning for a
/// mismatch, with a word of its own for a program in disguise, or a note for a known format
/// behind a name without an extension). Returns whether the content contradicts the name.
bool verifyFileType(const platform::OpenedItem& item,
                    const std::optional<ContentSignature>& signature, Accumulators& accumulators);

/// The same, detecting the item's content first.
bool verifyFileType(const platform::OpenedItem& item, Accumulators& accumulators);

/// The same from its parts: the name in `url`, the content and the desktop's type.
bool verifyFileType(const std::filesystem::path& url,
                    const std::optional<ContentSignature>& signature,
                    const std::optional<ContentType>& platformType, Accumulators& accumulators);

}  // namespace lumenscribe
