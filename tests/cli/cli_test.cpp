// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/command_line.h"
#include "platform/child_process.h"
#include "platform/decoder_protocol.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

using test::TempDir;

struct CliRun {
  int status;
  std::string out;
};

CliRun runCli(const std::vector<std::string>& arguments,
              platform::ChildOutput mode = platform::ChildOutput::stdoutOnly) {
  auto result = platform::runChildProcess(LUMENSCRIBE_CLI_PATH, arguments, mode);
  if (!result || !result->exitStatus) return {-1, ""};
  return {*result->exitStatus, result->output};
}

std::vector<std::string> lines(const std::string& text) {
  std::vector<std::string> out;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) out.push_back(line);
  return out;
}

TEST(CommandLine, readsOptionsUntilTheDoubleDash) {
  const auto line = cli::parseCommandLine({"--json", "a", "--", "--json", "-x"});
  EXPECT_TRUE(line.json);
  ASSERT_EQ(line.items.size(), 3u);
  EXPECT_TRUE(line.items[0].is_absolute());
  EXPECT_EQ(line.items[1].filename(), "--json");
  EXPECT_EQ(line.items[2].filename(), "-x");
  EXPECT_FALSE(cli::parseCommandLine({"--bogus", "a"}).error.empty());
  EXPECT_FALSE(cli::parseCommandLine({}).error.empty());
  EXPECT_TRUE(cli::parseCommandLine({"--version"}).error.empty());
  EXPECT_EQ(cli::absoluteItemPath("/a/./b/"), "/a/b");
  EXPECT_EQ(cli::absoluteItemPath("/a/../b"), "/a/../b");  // ".." is the kernel's to resolve
}

TEST(Cli, printsReportsSeparatedByOneEmptyLine) {
  TempDir dir;
  const auto a = dir.write("a.txt", "alpha");
  const auto b = dir.write("b.txt", "beta");
  const CliRun run = runCli({a.string(), b.string()});
  EXPECT_EQ(run.status, 0);
  const auto all = lines(run.out);
  EXPECT_EQ(all.front(), "LUMENSCRIBE INSPECTION REPORT");
  EXPECT_EQ(all.back(), "https://lumenscribe.org");
  EXPECT_NE(run.out.find("https://lumenscribe.org\n\nLUMENSCRIBE INSPECTION REPORT\n"),
            std::string::npos);
  EXPECT_NE(run.out.find("File: b.txt\n"), std::string::npos);
  // Each report is printed exactly as saved: the output ends with the maker's address.
  EXPECT_TRUE(run.out.ends_with("\nhttps://lumenscribe.org"))
      << run.out.substr(run.out.size() - 30);
}

// On a terminal each report's last line is ended, so neither an error message nor the shell
// prompt joins it; `script` gives the program a terminal (which writes "\r\n").
TEST(Cli, endsTheLastLineOnlyOnATerminal) {
  if (access("/usr/bin/script", X_OK) != 0) GTEST_SKIP() << "script(1) is not installed";
  TempDir dir;
  const auto a = dir.write("a.txt", "alpha");
  const auto b = dir.write("b.txt", "beta");
  const std::string command = std::string("'") + LUMENSCRIBE_CLI_PATH + "' '" + a.string() + "' '" +
                              (dir.path() / "missing").string() + "' '" + b.string() + "'";
  auto run = platform::runChildProcess("/usr/bin/script", {"-qec", command, "/dev/null"},
                                       platform::ChildOutput::stdoutOnly);
  ASSERT_TRUE(run && run->exitStatus);
  EXPECT_EQ(*run->exitStatus, 1);
  const std::string& out = run->output;
  EXPECT_NE(out.find("https://lumenscribe.org\r\nlumenscribe-cli: "), std::string::npos) << out;
  EXPECT_NE(out.find("No such file or directory\r\n\r\nLUMENSCRIBE INSPECTION REPORT"),
            std::string::npos)
      << out;
  EXPECT_TRUE(out.ends_with("https://lumenscribe.org\r\n")) << out;
}

TEST(Cli, printsOneJsonObjectPerItemAndFailsForTheBadOnes) {
  TempDir dir;
  const auto good = dir.write("--json", "named like an option");
  const auto missing = dir.path() / "missing";
  const CliRun run = runCli({"--json", "--", good.string(), missing.string()});
  EXPECT_EQ(run.status, 1);
  const auto all = lines(run.out);
  ASSERT_EQ(all.size(), 2u);
  const auto first = nlohmann::json::parse(all[0]);
  EXPECT_EQ(first["displayName"], "--json");
  EXPECT_EQ(first["sections"][0]["title"], "File");
  EXPECT_EQ(first["verdict"]["level"], "info");
  EXPECT_EQ(nlohmann::json::parse(all[1]),
            (nlohmann::json{{"path", missing.string()}, {"error", "No such file or directory"}}));

  const CliRun merged = runCli({missing.string()}, platform::ChildOutput::merged);
  EXPECT_EQ(merged.status, 1);
  EXPECT_EQ(merged.out, "lumenscribe-cli: " + missing.string() + ": No such file or directory\n");
  const CliRun special = runCli({"/dev/null"}, platform::ChildOutput::merged);
  EXPECT_EQ(special.out,
            "lumenscribe-cli: /dev/null: Lumenscribe could not inspect this file yet.\n");
}

TEST(Cli, goesOnToTheNextItemWhenTheDecoderCrashesOnOne) {
  TempDir dir;
  const auto crash = dir.write(
      "crash.png", "\x89PNG\r\n\x1a\n" + std::string(platform::decoder::kTestCrashMarker));
  const auto photo = std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health" / "intact.jpg";
  const CliRun run = runCli({"--json", crash.string(), photo.string(), crash.string()});
  EXPECT_EQ(run.status, 0);
  const auto all = lines(run.out);
  ASSERT_EQ(all.size(), 3u);
  for (const std::size_t crashed : {0u, 2u}) {
    const auto result = nlohmann::json::parse(all[crashed]);
    EXPECT_EQ(result["sections"][0]["title"], "File");
    EXPECT_EQ(result["rawMetadata"]["File Health Assessment"], "Verification limited");
    EXPECT_EQ(result["healthExplanation"]["structureValue"], "Decoder stopped");
    EXPECT_TRUE(result["rawMetadata"].contains("File SHA-256"));
  }
  EXPECT_EQ(nlohmann::json::parse(all[1])["rawMetadata"]["File Health Assessment"], "Looks intact");
}

TEST(Cli, behavesLikeALinuxToolOnUsage) {
  EXPECT_EQ(runCli({}).status, 2);
  const CliRun bad = runCli({"--frobnicate"}, platform::ChildOutput::merged);
  EXPECT_EQ(bad.status, 2);
  EXPECT_NE(bad.out.find("Usage: lumenscribe-cli"), std::string::npos);
  const CliRun help = runCli({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.out.rfind("Usage: lumenscribe-cli", 0), 0u);
  const CliRun version = runCli({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out.rfind("lumenscribe-cli ", 0), 0u);
}

TEST(Cli, makesRelativePathsAbsolute) {
  TempDir dir;
  dir.write("rel.txt", "x");
  const auto previous = std::filesystem::current_path();
  std::filesystem::current_path(dir.path());
  const CliRun run = runCli({"--json", "./rel.txt"});
  std::filesystem::current_path(previous);
  ASSERT_EQ(run.status, 0);
  const auto json = nlohmann::json::parse(run.out);
  EXPECT_EQ(json["path"], (dir.path() / "rel.txt").string());
  EXPECT_EQ(json["url"].get<std::string>().rfind("file:///", 0), 0u);
}

}  // namespace
}  // namespace lumenscribe
