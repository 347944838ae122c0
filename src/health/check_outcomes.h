// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "health/structure_checks.h"

// The shapes every structural check's outcome takes.
namespace lumenscribe::check {

inline StructureCheckResult passed(std::string status, std::string intactNote = {}) {
  return {std::move(status), "", false, false, std::move(intactNote)};
}

inline StructureCheckResult problem(std::string status, std::string detail) {
  return {std::move(status), std::move(detail), true, false, {}};
}

inline StructureCheckResult limited(std::string status, std::string detail) {
  return {std::move(status), std::move(detail), false, true, {}};
}

/// The decoder could give no answer for this file. A crash, a hang or a decode that ran out
/// of memory is no proof of damage, but nothing was verified either.
inline StructureCheckResult decoderGaveNoAnswer(std::error_code error, std::string_view reader) {
  if (error == platform::DecoderError::stopped) {
    return limited("Decoder stopped",
                   "The " + std::string(reader) +
                       " stopped while reading this file, so Lumenscribe could not check its "
                       "structure. Damaged files can do this, and so can files made to attack "
                       "the programs that open them.");
  }
  return limited("Could not check", "Lumenscribe could not start its " + std::string(reader) +
                                        ", so it could not check the structure of this file.");
}

/// "1 page", "3 pages".
inline std::string counted(long long count, std::string_view one, std::string_view many) {
  return std::to_string(count) + " " + std::string(count == 1 ? one : many);
}

}  // namespace lumenscribe::check
