// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "cli/command_line.h"
#include "cli/subcommands.h"
#include "core/path_text.h"
#include "lumenscribe/file_inspector.h"
#include "lumenscribe/product.h"
#include "report/json_report.h"
#include "report/text_report.h"

namespace {

constexpr const char* kHelp =
    "Usage: lumenscribe-cli [--json] FILE...\n"
    "  or:  lumenscribe-cli compare [--json] FILE1 FILE2\n"
    "  or:  lumenscribe-cli clean [--standard] [-o OUT] IMAGE\n"
    "Tell what a file or folder knows: its real type, health, SHA-256 fingerprint,\n"
    "ownership, format metadata and privacy findings. Everything stays on this machine.\n"
    "\n"
    "Commands:\n"
    "  compare        compare two files: sizes, types and SHA-256 fingerprints, the\n"
    "                 pixels of two images, the lines of two text files\n"
    "  clean          save a copy of an image without its camera, location, creator\n"
    "                 and software metadata (IMAGE-clean.EXT beside it, unless -o says\n"
    "                 where), then check the copy\n"
    "\n"
    "Options:\n"
    "  --json         print one JSON object per item, one per line (compare: one object)\n"
    "  -o, --output=OUT  clean: write the copy to OUT (a file, or a folder to put it in)\n"
    "  --standard     clean: decode and encode the image again instead of the pixel-safe\n"
    "                 copy, for images that cannot be copied pixel-safe\n"
    "  -h, --help     show this help and exit\n"
    "  -V, --version  show the version and exit\n"
    "  --             end of options (for files whose names start with '-', or are\n"
    "                 named compare or clean)\n"
    "\n"
    "Exit status: 0 on success, 1 when an item could not be inspected, compared or copied,\n"
    "2 on bad usage, 3 when clean cannot make a pixel-safe copy (try --standard).\n";

void write(std::FILE* stream, const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stream);
}

// `status`, unless standard output could not take everything written to it: then 1, so that
// `lumenscribe-cli --help > /dev/full` fails like any other lost output.
int finish(int status) {
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
    std::perror("lumenscribe-cli: standard output");
    return 1;
  }
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace lumenscribe;
  const cli::CommandLine line =
      cli::parseCommandLine(std::vector<std::string>(argv + 1, argv + argc));
  if (!line.error.empty()) {
    write(stderr, "lumenscribe-cli: " + line.error + "\n" + cli::kUsage + "\n");
    return 2;
  }
  if (line.command == cli::Command::compare && !line.help) return cli::runCompare(line);
  if (line.command == cli::Command::clean && !line.help) return cli::runClean(line);
  if (line.help) {
    write(stdout, kHelp);
    return finish(0);
  }
  if (line.version) {
    write(stdout, std::string("lumenscribe-cli ") + product::version + "\n");
    return finish(0);
  }

  // A report ends without a line feed, as saved. On a terminal the line is ended before an
  // error message or the shell prompt would join it; pipes and files get the exact text.
  const bool terminal = isatty(STDOUT_FILENO) == 1;
  bool lineOpen = false;
  const auto endTerminalLine = [&] {
    if (!terminal || !lineOpen) return;
    write(stdout, "\n");
    std::fflush(stdout);
    lineOpen = false;
  };

  const FileInspector inspector;
  int status = 0;
  bool first = true;
  for (const auto& item : line.items) {
    auto result = inspector.inspect(item);
    if (!result) {
      const std::string message = result.error().message();
      endTerminalLine();
      write(stderr, "lumenscribe-cli: " + validUtf8(item.string()) + ": " + message + "\n");
      if (line.json) write(stdout, failureJson(item, message) + "\n");
      status = 1;
      continue;
    }
    if (line.json) {
      write(stdout, resultJson(*result) + "\n");
    } else {
      // The report exactly as saved, without a final line feed; one empty line between two.
      write(stdout, (first ? "" : lineOpen ? "\n\n" : "\n") + buildTextReport(*result));
      lineOpen = true;
    }
    first = false;
    std::fflush(stdout);
  }
  endTerminalLine();
  return finish(status);
}
