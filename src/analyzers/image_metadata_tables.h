// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "core/metadata_value.h"

// The EXIF code tables: each names the codes it knows and shows any other code, or a value
// without an integer reading, as the value's own text ("9").
namespace lumenscribe {

std::string exposureProgramText(const MetadataValue& value);
std::string exposureModeText(const MetadataValue& value);
std::string meteringModeText(const MetadataValue& value);
std::string whiteBalanceText(const MetadataValue& value);
std::string sceneCaptureTypeText(const MetadataValue& value);
std::string colorSpaceText(const MetadataValue& value);

}  // namespace lumenscribe
