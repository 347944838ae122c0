// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

#include "core/metadata_value.h"

namespace lumenscribe::platform {

/// A binary property list ("bplist00", as Macs store metadata in extended attributes), as
/// a metadata value: texts (UTF-8), integers, reals, dates and arrays; booleans read as 1 and
/// 0, data, dictionaries and UIDs as a description ("3 bytes", "2 entries"). Nothing when the
/// bytes are not a binary property list or nest deeper or hold more values than any
/// metadata needs.
///
///     parseBinaryPlist(whereFroms);  // ["https://example.com/file.zip", "https://example.com/"]
std::optional<MetadataValue> parseBinaryPlist(std::string_view bytes);

}  // namespace lumenscribe::platform
