// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "cli/command_line.h"

#include <cstddef>

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
  std::size_t next = 0;
  if (!arguments.empty() && (arguments[0] == "compare" || arguments[0] == "clean")) {
    line.command = arguments[0] == "compare" ? Command::compare : Command::clean;
    next = 1;
  }
  const bool clean = line.command == Command::clean;
  bool optionsEnded = false;
  for (; next < arguments.size(); ++next) {
    const std::string& argument = arguments[next];
    if (!optionsEnded && argument.size() > 1 && argument[0] == '-') {
      if (argument == "--") {
        optionsEnded = true;
      } else if (argument == "--json" && !clean) {
        line.json = true;
      } else if (argument == "--standard" && clean) {
        line.standard = true;
      } else if (clean && (argument == "-o" || argument == "--output")) {
        if (next + 1 == arguments.size()) {
          line.error = "option '" + argument + "' needs a file name";
          return line;
        }
        line.output = absoluteItemPath(arguments[++next]);
      } else if (clean && argument.starts_with("--output=")) {
        line.output = absoluteItemPath(argument.substr(9));
      } else if (clean && argument.starts_with("-o")) {
        line.output = absoluteItemPath(argument.substr(2));
      } else if (argument == "-h" || argument == "--help") {
        line.help = true;
      } else if ((argument == "-V" || argument == "--version") &&
                 line.command == Command::inspect) {
        line.version = true;
      } else {
        line.error = "unrecognized option '" + argument + "'";
        return line;
      }
      continue;
    }
    line.items.push_back(absoluteItemPath(argument));
  }
  if (line.help || line.version) return line;
  switch (line.command) {
    case Command::inspect:
      if (line.items.empty()) line.error = "no FILE given";
      break;
    case Command::compare:
      if (line.items.size() != 2) line.error = "compare needs two files";
      break;
    case Command::clean:
      if (line.items.size() != 1) line.error = "clean needs one image";
      if (line.output && line.output->filename().empty()) line.error = "no file name after -o";
      break;
  }
  return line;
}

}  // namespace lumenscribe::cli
