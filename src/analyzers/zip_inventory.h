// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "core/accumulators.h"
#include "lumenscribe/inspection_control.h"
#include "platform/opened_item.h"

namespace lumenscribe {

/// The inventory of a file named *.zip: lists it with `unzipTool -l` (which extracts
/// nothing), handing unzip the opened item rather than its path, counts the listed entries as
/// they arrive and publishes them as "ZIP Archive Contents", "Contents Preview" and "Safe
/// Inspection", with the "Container ..." raw entries and the container findings. When the
/// listing cannot be had (no archive, a damaged directory, output that is not UTF-8) the only
/// contribution is the raw entry "ZIP Inspection Error". Blocks while unzip runs; a stop
/// requested through `control` kills it and adds nothing.
void inventoryZipArchive(const platform::OpenedItem& item, Accumulators& accumulators,
                         const InspectionControl& control = {},
                         const std::filesystem::path& unzipTool = "/usr/bin/unzip");

}  // namespace lumenscribe
