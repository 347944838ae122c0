// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "core/accumulators.h"
#include "core/content_type.h"

namespace lumenscribe {

/// The outcome of one structural check. `isProblem` (damage found) and `isLimited` (health
/// could not be confirmed, no damage found) are never both true.
struct StructureCheckResult {
  std::string status;  // the value of the check's row, e.g. "Complete"
  std::string detail;  // one sentence
  bool isProblem = false;
  bool isLimited = false;

  friend bool operator==(const StructureCheckResult&, const StructureCheckResult&) = default;
};

/// The "File Health" section of a regular file: one structural check chosen by the kind of
/// file (an image decode, a PDF open, a ZIP test run, or else a first/last byte read),
/// turned into one of the verdicts "Empty file", "Unreadable", "Looks intact",
/// "Verification limited", "Possible damage" or "Possible read problem". Adds the section,
/// "File Health Assessment" and "File Health Detail", the summary item, and a finding for
/// every verdict but "Looks intact". `size` is the size the file system reports (0 when
/// unknown). Blocks while unzip runs; never fails.
void assessFileHealth(const std::filesystem::path& url,
                      const std::optional<ContentType>& platformType, std::int64_t size,
                      Accumulators& accumulators);

/// Decodes image 0 and says how complete it is.
StructureCheckResult checkImageStructure(const std::filesystem::path& url);

/// Runs `unzipTool -tqq PATH` (extracting nothing) and reads its verdict; a tool that cannot
/// be started gives "Could not test".
StructureCheckResult testZipIntegrity(const std::filesystem::path& url,
                                      const std::filesystem::path& unzipTool = "/usr/bin/unzip");

/// True only when the first byte and the byte at `size - 1` can both be read; false for a
/// size below 1 without opening anything.
bool basicReadTest(const std::filesystem::path& url, std::int64_t size);

}  // namespace lumenscribe
