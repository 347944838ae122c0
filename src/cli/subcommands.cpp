// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "cli/subcommands.h"

#include <cstdio>
#include <string>
#include <variant>

#include "cleancopy/clean_copy.h"
#include "cleancopy/copy_check.h"
#include "compare/comparison_text.h"
#include "compare/file_comparison.h"
#include "core/path_text.h"
#include "platform/decoder_client.h"

namespace lumenscribe::cli {

namespace {

void print(std::FILE* stream, const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stream);
}

int finish(int status) {
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
    std::perror("lumenscribe-cli: standard output");
    return 1;
  }
  return status;
}

std::string shown(const std::filesystem::path& path) { return validUtf8(path.string()); }

// Where the copy goes: OUT, inside OUT when it is a folder, else beside the image.
std::filesystem::path destinationFor(const CommandLine& line, const CleanCopyPlan& plan) {
  const std::filesystem::path& image = line.items.front();
  if (!line.output) return image.parent_path() / plan.suggestedName;
  std::error_code error;
  if (std::filesystem::is_directory(*line.output, error)) return *line.output / plan.suggestedName;
  return *line.output;
}

void printCheck(const CleanCopyCheck& check) {
  if (check.pixelsCompared) {
    print(stdout, check.pixelsMatch
                      ? "Checked: the copy decodes to exactly the original's pixels.\n"
                      : "Checked: the copy's pixels differ from the original's.\n");
  }
  print(stdout, check.personalProperties.empty()
                    ? "Checked: no camera, location, creator or software property is left.\n"
                    : "Checked: camera, location, creator or software properties are left: " +
                          propertyListText(check.personalProperties) + "\n");
}

}  // namespace

int runCompare(const CommandLine& line) {
  platform::DecoderClient decoder;
  const auto outcome = compareFiles(line.items[0], line.items[1], decoder);
  if (const auto* failure = std::get_if<ComparisonFailure>(&outcome)) {
    print(stderr, "lumenscribe-cli: " + comparisonFailureMessage(*failure) + "\n");
    return 1;
  }
  const FileComparison& comparison = std::get<FileComparison>(outcome);
  print(stdout, (line.json ? comparisonJson(comparison) : comparisonReport(comparison)) + "\n");
  return finish(0);
}

int runClean(const CommandLine& line) {
  namespace text = clean_copy_text;
  platform::DecoderClient decoder;
  const std::filesystem::path& image = line.items.front();
  const auto plan = prepareCleanCopy(image, decoder);
  if (!plan) {
    print(stderr,
          "lumenscribe-cli: " + shown(image) + ": " + std::string(text::kPrepareFailed) + "\n");
    return 1;
  }
  const std::filesystem::path destination = destinationFor(line, *plan);
  const CleanCopyKind kind = line.standard ? CleanCopyKind::standard : CleanCopyKind::pixelSafe;
  const CleanCopyResult result = makeCleanCopy(image, destination, kind, decoder);
  switch (result.state) {
    case CleanCopyState::saved:
      print(stdout, std::string(kind == CleanCopyKind::pixelSafe ? "Pixel-safe" : "Standard") +
                        " clean copy saved: " + shown(destination) + "\n");
      if (result.check) printCheck(*result.check);
      return finish(0);
    case CleanCopyState::pixelSafeRefused:
      print(stderr, "lumenscribe-cli: " + std::string(text::kQuestionTitle) + ": " +
                        result.message + "\n" +
                        "lumenscribe-cli: run again with --standard to make a standard clean "
                        "copy.\n");
      return kExitPixelSafeRefused;
    case CleanCopyState::failed: break;
  }
  print(stderr, "lumenscribe-cli: " + shown(destination) + ": " + result.message + "\n");
  if (!result.reason.empty()) print(stderr, "lumenscribe-cli: " + result.reason + "\n");
  return 1;
}

}  // namespace lumenscribe::cli
