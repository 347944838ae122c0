// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "core/accumulators.h"
#include "platform/opened_item.h"

namespace lumenscribe {

/// The "Text Analysis" section of a text or source file: encoding, lines, words, characters,
/// blank lines, line endings, source type, the contact-data counts and the longest line; the
/// "Text ..." raw entries, the summary item, and a finding for each kind of contact data
/// found (counts only, never the values). The file is mapped read-only, not copied. Adds
/// nothing when it cannot be read or no candidate encoding decodes it; never fails.
void analyzeText(const platform::OpenedItem& item, Accumulators& accumulators);

/// The language implied by the file name's extension, lower-cased ("script.PY" gives
/// "Python"); nothing for an extension not in the table.
std::optional<std::string> sourceLanguage(const std::filesystem::path& url);

}  // namespace lumenscribe
