// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "cli/subcommands.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "platform/child_process.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

const std::filesystem::path kFixtures =
    std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "cleancopy";

struct CliRun {
  int status;
  std::string out;
};

// The command line, as a user without the right to ignore file permissions when the tests
// run as root: root writes into read-only folders.
CliRun run(const std::vector<std::string>& arguments,
           platform::ChildOutput mode = platform::ChildOutput::merged) {
  std::vector<std::string> line = arguments;
  std::filesystem::path program = LUMENSCRIBE_CLI_PATH;
  if (test::runningAsRoot()) {
    line.insert(line.begin(), {"--reuid=65534", "--regid=65534", "--clear-groups", program});
    program = "/usr/bin/setpriv";
  }
  auto result = platform::runChildProcess(program, line, mode);
  if (!result || !result->exitStatus) return {-1, ""};
  return {*result->exitStatus, result->output};
}

class CliSubcommands : public ::testing::Test {
 protected:
  void SetUp() override { std::filesystem::permissions(dir.path(), std::filesystem::perms::all); }
  test::TempDir dir;
};

TEST_F(CliSubcommands, compareTellsTheSheetOrItsJsonAndFailsForAFileItCannotRead) {
  const auto a = dir.write("a.txt", "same\nold");
  const auto b = dir.write("b.txt", "same\nnew");
  const CliRun same = run({"compare", a, a}, platform::ChildOutput::stdoutOnly);
  EXPECT_EQ(same.status, 0);
  EXPECT_TRUE(same.out.starts_with("Exact Match\n")) << same.out;

  const CliRun json = run({"compare", "--json", a, b}, platform::ChildOutput::stdoutOnly);
  ASSERT_EQ(json.status, 0);
  const auto comparison = nlohmann::json::parse(json.out);
  EXPECT_EQ(comparison["identical"], false);
  EXPECT_EQ(comparison["totalChangedLines"], 1);
  EXPECT_EQ(comparison["textDifferences"][0]["second"], "new");

  const CliRun missing = run({"compare", a, (dir.path() / "gone.txt").string()});
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.out,
            "lumenscribe-cli: Lumenscribe could not compare these files: gone.txt: No such file or "
            "directory\n");
  for (const std::vector<std::string>& usage : {std::vector<std::string>{"compare", a},
                                                {"compare", a, b, b},
                                                {"clean"},
                                                {"clean", "-o"},
                                                {"clean", "--json", a},
                                                {"compare", "--standard", a, b}}) {
    EXPECT_EQ(run(usage).status, 2) << ::testing::PrintToString(usage);
  }
}

TEST_F(CliSubcommands, cleanWritesBesideTheImageSaysHowItCheckedAndAsksBeforeReencoding) {
  const auto photo = dir.path() / "photo.JPG";
  std::filesystem::copy_file(kFixtures / "camera_gps_thumbnail.jpg", photo);
  const CliRun saved = run({"clean", photo});
  EXPECT_EQ(saved.status, 0) << saved.out;
  EXPECT_EQ(saved.out, "Pixel-safe clean copy saved: " + (dir.path() / "photo-clean.JPG").string() +
                           "\nChecked: the copy decodes to exactly the original's pixels.\n"
                           "Checked: no camera, location, creator or software property is left.\n");

  const auto tiff = (kFixtures / "camera_gps.tif").string();
  const CliRun refused = run({"clean", "-o", dir.path() / "copy.tif", tiff});
  EXPECT_EQ(refused.status, 3);
  EXPECT_NE(refused.out.find("Pixel-safe copy unavailable: Lumenscribe could not make a "
                             "pixel-safe copy for this image. A standard clean copy will still "
                             "remove the metadata, but JPEG or HEIC files may be re-encoded.\n"),
            std::string::npos)
      << refused.out;
  EXPECT_FALSE(std::filesystem::exists(dir.path() / "copy.tif"));
  const CliRun standard = run({"clean", "--standard", "--output=" + dir.path().string(), tiff});
  EXPECT_EQ(standard.status, 0) << standard.out;
  EXPECT_TRUE(std::filesystem::exists(dir.path() / "camera_gps-clean.tif"));

  const CliRun pages = run({"clean", (kFixtures / "two_pages.tif").string()});
  EXPECT_EQ(pages.status, 1);
  EXPECT_NE(pages.out.find(": Lumenscribe could not prepare a clean copy of this image.\n"),
            std::string::npos);

  const auto locked = dir.path() / "locked";
  std::filesystem::create_directory(locked);
  std::filesystem::permissions(
      locked, std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec |
                  std::filesystem::perms::others_read | std::filesystem::perms::others_exec);
  const CliRun readOnly = run({"clean", "-o", locked / "copy.jpg", photo});
  EXPECT_EQ(readOnly.status, 1);
  EXPECT_NE(readOnly.out.find(": Lumenscribe could not create the clean-copy destination.\n"),
            std::string::npos)
      << readOnly.out;
  EXPECT_TRUE(std::filesystem::is_empty(locked));
}

}  // namespace
}  // namespace lumenscribe
