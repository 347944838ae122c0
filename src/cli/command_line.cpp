// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "cli/command_line.h"

namespace lumenscribe::cli {

std::filesystem::path absoluteItemPath(const std::filesystem::path& path) {
  std::error_code error;
  std::filesystem::path absolute = std::filesystem::absolute(path, error);
  if (error) absolute = path;
  // Only "." and empty components go: ".." after a symbolic link is not the parent that a
  // lexical clean-up would pick, so it stays for the kernel to resolve.
  std::filesystem::path cleaned;
  for (const auto& part : absolute) {
    if (part == "." || part.empty()) continue;
    cleaned /= part;
  }
  return cleaned.empty() ? absolute : cleaned;
}

CommandLine parseCommandLine(const std::vector<std::string>& arguments) {
  CommandLine line;
  bool optionsEnded = false;
  for (const auto& argument : arguments) {
    if (!optionsEnded && argument.size() > 1 && argument[0] == '-') {
      if (argument == "--") {
        optionsEnded = true;
      } else if (argument == "--json") {
        line.json = true;
      } else if (argument == "-h" || argument == "--help") {
        line.help = true;
      } else if (argument == "-V" || argument == "--version") {
        line.version = true;
      } else {
        line.error = "unrecognized option '" + argument + "'";
        return line;
      }
      continue;
    }
    line.items.push_back(absoluteItemPath(argument));
  }
  if (!line.help && !line.version && line.items.empty()) line.error = "no FILE given";
  return line;
}

}  // namespace lumenscribe::cli
