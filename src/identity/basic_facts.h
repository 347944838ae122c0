// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <vector>

#include "core/item_facts.h"
#include "lumenscribe/result.h"

namespace lumenscribe {

/// The rows of the "File" or "Container" section: Name, Type, Size, Created, Modified,
/// Extension or Container Type, Path. Reads nothing beyond the facts; never empty.
std::vector<InsightRow> basicFileFacts(const std::filesystem::path& url, const ItemFacts& facts);

}  // namespace lumenscribe
