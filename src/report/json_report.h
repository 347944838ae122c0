// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <system_error>

#include "lumenscribe/result.h"

namespace lumenscribe {

/// One line of JSON for a result: id, url, path, displayName, typeDescription,
/// summaryCount, summaryItems, sections, privacyFindings, rawMetadata, verdict, counts, and
/// healthExplanation when the file's health is uncertain.
/// Front ends and tests rely on this shape.
std::string resultJson(const LumenscribeResult& result);

/// One line of JSON for an item that could not be inspected: {"path", "error"}.
std::string failureJson(const std::filesystem::path& path, const std::string& message);

}  // namespace lumenscribe
