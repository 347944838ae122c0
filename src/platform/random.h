// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>

namespace lumenscribe::platform {

/// Fills `out` from the system's cryptographic random source.
void fillRandom(std::span<std::byte> out);

}  // namespace lumenscribe::platform
