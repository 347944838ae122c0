// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <system_error>

#include "lumenscribe/result.h"

namespace lumenscribe {

/// The name a saved report is proposed under: the item's name without its extension, then
/// "-Lumenscribe-Report.txt" ("IMG_0042.HEIC" gives "IMG_0042-Lumenscribe-Report.txt", a
/// folder "Projects" gives "Projects-Lumenscribe-Report.txt"); "Lumenscribe-Report" stands in
/// for a name that is empty without its extension.
std::string proposedReportName(const std::filesystem::path& url);

/// Writes the text report of `result` to `destination` as UTF-8 without a byte-order mark.
/// A reader finds either the file that was there before or the whole report, never part of
/// it: the report is written beside the destination and renamed over it once complete.
/// Returns the system's error (EACCES, EROFS, ENOSPC, EISDIR...); nothing is left behind then.
std::error_code writeTextReport(const LumenscribeResult& result,
                                const std::filesystem::path& destination);

/// "Lumenscribe could not save the report: {error}".
std::string reportSaveFailureMessage(std::error_code error);

}  // namespace lumenscribe
