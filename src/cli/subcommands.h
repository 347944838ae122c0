// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include "cli/command_line.h"

namespace lumenscribe::cli {

/// The exit status of `clean` when no pixel-safe copy can be made (the window asks then).
inline constexpr int kExitPixelSafeRefused = 3;

/// `compare A B [--json]`: prints the comparison as the window's sheet shows it, or as one
/// JSON object. 0 when the files were compared, 1 when one could not be read.
int runCompare(const CommandLine& line);

/// `clean IMAGE [-o OUT] [--standard]`: writes the clean copy and says how it was checked.
/// 0 when it is saved, 1 on a failure, kExitPixelSafeRefused when only a standard copy can
/// be made.
int runClean(const CommandLine& line);

}  // namespace lumenscribe::cli
