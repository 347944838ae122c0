// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// Real files named as they should be, from the sample corpus and from this system's own
// /usr/share: none may be called renamed, and none may be called damaged when the
// format's own tool (unzip, qpdf, ffprobe, gzip and its kin, ImageMagick) finds nothing
// wrong with it. The few deliberate exceptions are listed with their reasons.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

#include "lumenscribe/file_inspector.h"
#include "platform/child_process.h"

namespace lumenscribe {
namespace {

namespace fs = std::filesystem;

struct Exception {
  std::string_view pathEnd;
  std::string_view reason;
};

// Files named correctly that are still called renamed, on purpose.
constexpr std::array kRenamedOnPurpose = {
    Exception{"T01_004_header_invalid-syntax-no-dash.pdf",
              "the PDF header is broken on purpose: the first bytes no longer say PDF"},
    Exception{"T01_005_header-invalid-syntax-replace-char.pdf", "the same, another character"},
    Exception{"T01_006_header-invalid-syntax-no-pdf.pdf", "the same, without \"PDF\""},
    Exception{"T01_007_header-no-version-info.pdf", "the same, without a version"},
    // Names that only look like another format's.
    Exception{"/autoconf/build-aux/config.sub",
              "autoconf's executable shell script ends in .sub, the subtitle extension: a "
              "program behind a text name, which is what the warning is for"},
    Exception{"/misc/config.sub", "the same script, as Debian installs it"},
    Exception{"/vim/vim90/tutor/tutor.it",
              "vim's Italian tutor is text; .it is Impulse Tracker's extension"},
    Exception{"/coccinelle/tests/free.res",
              "a test result in text; .res is a Godot Engine resource to the MIME database"},
    Exception{"/coccinelle/tests/unused.res", "the same"},
};

// Files called damaged although their tool passes them, on purpose.
constexpr std::array<Exception, 0> kDamagedOnPurpose = {};

bool listed(std::span<const Exception> exceptions, const fs::path& path) {
  const std::string text = path.string();
  return std::any_of(exceptions.begin(), exceptions.end(),
                     [&](const Exception& e) { return text.ends_with(e.pathEnd); });
}

// Every regular file under `root` in name order, every `stride`-th one, at most `limit`.
std::vector<fs::path> sample(const fs::path& root, std::size_t stride, std::size_t limit) {
  std::vector<fs::path> all;
  std::error_code error;
  for (fs::recursive_directory_iterator
           it(root, fs::directory_options::skip_permission_denied, error),
       end;
       it != end; it.increment(error)) {
    if (error) break;
    if (it->is_regular_file(error) && !it->is_symlink(error)) all.push_back(it->path());
  }
  std::sort(all.begin(), all.end());
  std::vector<fs::path> kept;
  for (std::size_t i = 0; i < all.size() && kept.size() < limit; i += stride) {
    kept.push_back(all[i]);
  }
  return kept;
}

// Whether the format's own tool, run on the path, finds nothing wrong: it exits 0 and, for
// the tools that report problems only as text, prints no error. Nothing when there is no
// such tool here.
std::optional<bool> toolPasses(const std::string& check, const std::string& signature,
                               const fs::path& path) {
  struct Tool {
    const char* program;
    std::vector<std::string> arguments;
    bool quietWhenClean;
  };
  std::optional<Tool> tool;
  if (check == "ZIP Structure") tool = Tool{"/usr/bin/unzip", {"-tqq"}, false};
  if (check == "PDF Structure") tool = Tool{"/usr/bin/qpdf", {"--check"}, false};
  if (check == "Media Structure") {
    // Reads every packet and prints only their count per stream, and any error.
    tool = Tool{"/usr/bin/ffprobe",
                {"-v", "error", "-err_detect", "crccheck", "-count_packets", "-show_entries",
                 "stream=nb_read_packets", "-of", "csv=p=0"},
                true};
  }
  if (check == "Image Structure") {
    tool = Tool{"/usr/bin/convert-im6.q16", {"-regard-warnings"}, false};
  }
  if (check == "Compressed Stream") {
    if (signature.starts_with("Gzip")) tool = Tool{"/bin/gzip", {"-t"}, false};
    if (signature.starts_with("XZ")) tool = Tool{"/usr/bin/xz", {"-t"}, false};
    if (signature.starts_with("Bzip")) tool = Tool{"/bin/bzip2", {"-t"}, false};
    if (signature.starts_with("Zstandard")) tool = Tool{"/usr/bin/zstd", {"-t", "-q"}, false};
  }
  if (!tool || !fs::exists(tool->program)) return std::nullopt;
  tool->arguments.push_back(path.string());
  if (check == "Image Structure") tool->arguments.push_back("null:");
  const auto run = platform::runChildProcess(
      tool->program, tool->arguments,
      tool->quietWhenClean ? platform::ChildOutput::merged : platform::ChildOutput::stdoutOnly,
      1024 * 1024);
  if (!run || !run->exitStatus) return std::nullopt;
  if (*run->exitStatus != 0) return false;
  // ffprobe prints the packet counts; with -v error anything else is a complaint.
  return !tool->quietWhenClean || std::all_of(run->output.begin(), run->output.end(), [](char c) {
    return (c >= '0' && c <= '9') || c == '\n' || c == ',';
  });
}

std::string structureRow(const LumenscribeResult& result) {
  for (const auto& section : result.sections) {
    if (section.title == "File Health" && section.rows.size() == 3) return section.rows[2].label;
  }
  return "";
}

void walk(const std::vector<fs::path>& files, int& inspected) {
  const FileInspector inspector;
  for (const fs::path& file : files) {
    SCOPED_TRACE(file.string());
    const auto result = inspector.inspect(file);
    if (!result) continue;  // vanished or unreadable: another test's concern
    ++inspected;
    const auto& raw = result->rawMetadata;
    const auto value = [&](const std::string& key) {
      const auto found = raw.find(key);
      return found == raw.end() ? std::string() : found->second;
    };
    if (value("Type Verification Result") == "Mismatch detected") {
      EXPECT_TRUE(listed(kRenamedOnPurpose, file))
          << "called renamed: its content is " << value("Type Verification Signature");
    }
    if (value("File Health Assessment") == "Possible damage" && !listed(kDamagedOnPurpose, file)) {
      const std::string check = structureRow(*result);
      const auto passes = toolPasses(check, value("Type Verification Signature"), file);
      EXPECT_NE(passes, std::optional(true))
          << "called damaged by its " << check << " check (" << value("File Health Detail")
          << "), but its own tool finds nothing wrong";
    }
  }
}

TEST(NoFalseAlarm, theSampleCorpusIsNeitherRenamedNorDamagedWhereItsToolsAgree) {
  const fs::path corpus = LUMENSCRIBE_CORPUS_DIR;
  if (!fs::is_directory(corpus)) GTEST_SKIP() << "no sample corpus at " << corpus;
  int inspected = 0;
  walk(sample(corpus, 1, 100000), inspected);
  EXPECT_GT(inspected, 380);
}

TEST(NoFalseAlarm, thisSystemsOwnFilesAreNeitherRenamedNorDamaged) {
  // Every 10th file: man pages, icons, fonts, sounds, documentation and data of whatever
  // packages this machine has.
  const auto files = sample("/usr/share", 10, 8000);
  if (files.size() < 100) GTEST_SKIP() << "too little in /usr/share to judge by";
  int inspected = 0;
  walk(files, inspected);
  EXPECT_GT(inspected, 100);
}

}  // namespace
}  // namespace lumenscribe
