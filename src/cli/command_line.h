// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace lumenscribe::cli {

struct CommandLine {
  bool json = false;
  bool help = false;
  bool version = false;
  /// Absolute, with "." components and trailing slashes dropped.
  std::vector<std::filesystem::path> items;
  /// Set when the arguments are not usable; the caller prints it with the usage line.
  std::string error;
};

inline constexpr const char* kUsage = "Usage: lumenscribe-cli [--json] FILE...";

/// Reads the arguments after the program name. "--" ends the options, so that a file
/// named "--json" or "-x" can be inspected.
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

/// `path` made absolute against the working directory, without resolving links.
std::filesystem::path absoluteItemPath(const std::filesystem::path& path);

}  // namespace lumenscribe::cli
