// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace lumenscribe::cli {

enum class Command {
  inspect,  // lumenscribe-cli [--json] FILE...
  compare,  // lumenscribe-cli compare [--json] FILE1 FILE2
  clean,    // lumenscribe-cli clean [--standard] [-o OUT] IMAGE
};

struct CommandLine {
  Command command = Command::inspect;
  bool json = false;
  bool help = false;
  bool version = false;
  /// Absolute, with "." components and trailing slashes dropped: the items to inspect, the
  /// two files to compare or the image to copy.
  std::vector<std::filesystem::path> items;
  /// clean: where the copy goes (absolute); beside the image when not given.
  std::optional<std::filesystem::path> output;
  /// clean: the standard copy (decoded and encoded again) instead of the pixel-safe one.
  bool standard = false;
  /// Set when the arguments are not usable; the caller prints it with the usage line.
  std::string error;
};

inline constexpr const char* kUsage =
    "Usage: lumenscribe-cli [--json] FILE...\n"
    "  or:  lumenscribe-cli compare [--json] FILE1 FILE2\n"
    "  or:  lumenscribe-cli clean [--standard] [-o OUT] IMAGE";

/// Reads the arguments after the program name. A first argument "compare" or "clean" names
/// a command; "--" ends the options, so that a file named "--json", "-x" or "compare" can be
/// inspected ("lumenscribe-cli -- compare").
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

/// `path` made absolute against the working directory, without resolving links.
std::filesystem::path absoluteItemPath(const std::filesystem::path& path);

}  // namespace lumenscribe::cli
