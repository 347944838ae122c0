// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "report/report_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "report/text_report.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

std::string contentOf(const std::filesystem::path& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

TEST(ReportFile, proposesTheItemsNameWithoutItsExtension) {
  const std::pair<const char*, const char*> cases[] = {
      {"/home/me/IMG_0042.HEIC", "IMG_0042-Lumenscribe-Report.txt"},
      {"/home/me/Projects", "Projects-Lumenscribe-Report.txt"},
      {"/home/me/Projects/", "Projects-Lumenscribe-Report.txt"},
      {"/home/me/archive.tar.gz", "archive.tar-Lumenscribe-Report.txt"},
      {"/home/me/.bashrc", ".bashrc-Lumenscribe-Report.txt"},
      {"/", "Lumenscribe-Report-Lumenscribe-Report.txt"},
  };
  for (const auto& [url, name] : cases) EXPECT_EQ(proposedReportName(url), name) << url;
}

TEST(ReportFile, replacesAFileWholeOrLeavesEverythingAsItWas) {
  const test::TempDir folder;
  const LumenscribeResult result("/home/me/notes.txt", "notes.txt", "Plain Text Document", 1,
                                 {"File"}, {}, {}, {{"Key", "value"}});
  const std::filesystem::path report = folder.path() / "notes-Lumenscribe-Report.txt";
  folder.write("notes-Lumenscribe-Report.txt", std::string(4096, 'x'));
  EXPECT_FALSE(writeTextReport(result, report));
  EXPECT_EQ(contentOf(report), buildTextReport(result));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);

  // A folder of that name stays a folder; a missing folder gets nothing.
  std::filesystem::create_directory(folder.path() / "taken");
  EXPECT_TRUE(writeTextReport(result, folder.path() / "taken") == std::errc::is_a_directory);
  EXPECT_TRUE(writeTextReport(result, folder.path() / "gone" / "report.txt") ==
              std::errc::no_such_file_or_directory);
  EXPECT_EQ(reportSaveFailureMessage(std::make_error_code(std::errc::permission_denied)),
            "Lumenscribe could not save the report: Permission denied");
}

}  // namespace
}  // namespace lumenscribe
