// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "core/item_facts.h"

namespace lumenscribe {

/// A byte count in decimal units, as file managers write sizes: "Zero KB", "1 byte",
/// "512 bytes", "14 KB", "1.5 MB", "1.23 GB". KB has no decimals, MB one, GB and larger
/// two; trailing zero decimals are dropped and a value that rounds to 1000 of a unit is
/// written in the next one.
std::string byteCountText(std::int64_t bytes);

/// Medium date and time in the user's locale and time zone (see platform/date_format.h).
std::string mediumDateText(Timestamp date);

}  // namespace lumenscribe
