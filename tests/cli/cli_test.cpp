// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/command_line.h"
#include "platform/child_process.h"
#include "platform/decoder_protocol.h"
#include "platform/file_descriptor.h"
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

// The working directory of the test program, changed for one scope.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::filesystem::path& path)
      : previous_(std::filesystem::current_path()) {
    std::filesystem::current_path(path);
  }
  ~WorkingDirectory() { std::filesystem::current_path(previous_); }

 private:
  std::filesystem::path previous_;
};

TEST(CommandLine, makesItemsAbsoluteWithoutResolvingParents) {
  EXPECT_TRUE(cli::parseCommandLine({"a"}).items.at(0).is_absolute());
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

// unzip asks for a ZIP's password on /dev/tty: run from a terminal, the inspection must still
// never let it find one, or it would wait for an answer nobody is asked for.
TEST(Cli, neverLetsAChildPromptOnTheTerminalItRunsIn) {
  if (access("/usr/bin/script", X_OK) != 0) GTEST_SKIP() << "script(1) is not installed";
  const auto zip =
      std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health" / "password_protected.zip";
  const std::string command = std::string("'") + LUMENSCRIBE_CLI_PATH + "' '" + zip.string() + "'";
  auto run = platform::runChildProcess("/usr/bin/timeout",
                                       {"20", "/usr/bin/script", "-qec", command, "/dev/null"},
                                       platform::ChildOutput::stdoutOnly);
  ASSERT_TRUE(run && run->exitStatus);
  EXPECT_EQ(*run->exitStatus, 0) << "124: it waited for a password";
  EXPECT_NE(run->output.find("File Health Assessment: Verification limited"), std::string::npos)
      << run->output;
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

TEST(Cli, acceptsEverySpellingTheHelpDocuments) {
  TempDir dir;
  dir.write("-", "a file named like standard input");
  dir.write("--json", "a file named like an option");
  const WorkingDirectory inside(dir.path());
  struct Case {
    std::vector<std::string> arguments;
    int status;
    std::string outputStart;  // "{": one JSON object, whose displayName is `name`
    std::string name;
  };
  const Case cases[] = {
      {{"-h"}, 0, "Usage: lumenscribe-cli [--json] FILE...\n", ""},
      {{"--help"}, 0, "Usage: lumenscribe-cli [--json] FILE...\n", ""},
      {{"-V"}, 0, "lumenscribe-cli ", ""},
      {{"--version"}, 0, "lumenscribe-cli ", ""},
      {{"--json", "-"}, 0, "{", "-"},  // a lone dash is a file name, not standard input
      {{"--json", "--", "--json"}, 0, "{", "--json"},
      {{"-"}, 0, "LUMENSCRIBE INSPECTION REPORT\n", ""},
      {{"--"}, 2, "", ""},
      {{}, 2, "", ""},
      {{"-x", "-"}, 2, "", ""},
      {{"--JSON", "-"}, 2, "", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.arguments));
    const CliRun run = runCli(c.arguments);
    EXPECT_EQ(run.status, c.status);
    EXPECT_TRUE(run.out.starts_with(c.outputStart)) << run.out;
    if (c.outputStart == "{") {  // a relative name, made absolute
      const auto json = nlohmann::json::parse(run.out);
      EXPECT_EQ(json["displayName"], c.name);
      EXPECT_EQ(json["path"], (dir.path() / c.name).string());
    }
    if (c.status == 2) {
      const CliRun told = runCli(c.arguments, platform::ChildOutput::merged);
      EXPECT_NE(told.out.find("\nUsage: lumenscribe-cli"), std::string::npos) << told.out;
    }
  }
}

// Output that could not be written is a failure, whatever was asked for.
TEST(Cli, failsWhenStandardOutputCannotBeWritten) {
  const platform::UniqueFd full(::open("/dev/full", O_WRONLY | O_CLOEXEC));
  ASSERT_TRUE(full);
  const std::string notes =
      (std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health" / "notes.txt").string();
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
           {notes}, {"--json", notes}, {"--help"}, {"--version"}}) {
    SCOPED_TRACE(::testing::PrintToString(arguments));
    auto child = platform::spawnChild(LUMENSCRIBE_CLI_PATH, arguments, full.get(), -1);
    ASSERT_TRUE(child);
    const auto status = child->wait();
    ASSERT_TRUE(status && WIFEXITED(*status));
    EXPECT_EQ(WEXITSTATUS(*status), 1);
  }
}

}  // namespace
}  // namespace lumenscribe
