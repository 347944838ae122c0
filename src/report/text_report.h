// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "lumenscribe/result.h"

namespace lumenscribe {

/// The plain-text report of a result: line-feed separated, no final line feed.
std::string buildTextReport(const LumenscribeResult& result);

/// The label a row is shown under in the report and the window ("SHA-256" reads
/// "Digital Fingerprint (SHA-256)").
std::string_view displayLabel(std::string_view label);

}  // namespace lumenscribe
