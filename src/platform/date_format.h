// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "core/item_facts.h"

namespace lumenscribe::platform {

/// ICU's medium date and medium time style in the user's locale (LC_ALL, then LC_TIME,
/// then LANG; "C" and "POSIX" read as en_US) and the system time zone:
/// "Nov 22, 2026, 10:39:28 PM" (with U+202F before PM) for en_US.
/// One formatter, made on first use and shared by all threads.
std::string mediumDateText(Timestamp date);

}  // namespace lumenscribe::platform
