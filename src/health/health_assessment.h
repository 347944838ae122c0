// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

#include "core/accumulators.h"
#include "platform/decoder_client.h"
#include "platform/opened_item.h"

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
/// every verdict but "Looks intact". Images and PDFs are decoded by `decoder`, in its worker;
/// a decoder that stops on the file limits the verdict. Blocks while unzip runs; never fails.
void assessFileHealth(const platform::OpenedItem& item, platform::DecoderClient& decoder,
                      Accumulators& accumulators);

/// Decodes image 0 and says how complete it is.
StructureCheckResult checkImageStructure(const platform::OpenedItem& item,
                                         platform::DecoderClient& decoder);

/// Runs `unzipTool -tqq` (extracting nothing) on the opened item, handed to it as an
/// inherited descriptor, and reads its verdict; a tool that cannot be started gives "Could
/// not test".
StructureCheckResult testZipIntegrity(const platform::OpenedItem& item,
                                      const std::filesystem::path& unzipTool = "/usr/bin/unzip");

/// True only when the first byte and the last byte of the item as opened can both be read;
/// false for an empty or unreadable item.
bool basicReadTest(const platform::OpenedItem& item);

}  // namespace lumenscribe
