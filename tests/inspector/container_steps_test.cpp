// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <filesystem>
#include <stop_token>

#include "lumenscribe/file_inspector.h"
#include "platform/opened_item.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

namespace fs = std::filesystem;
using test::TempDir;

const fs::path kFixtures = test::kData / "containers";

bool hasSection(const LumenscribeResult& result, std::string_view title) {
  const auto titles = test::titlesOf(result.sections);
  return std::find(titles.begin(), titles.end(), title) != titles.end();
}

TEST(ContainerSteps, onlyTheZipExtensionInAnyCaseBringsTheListing) {
  TempDir dir;
  const fs::path archive = kFixtures / "listing.zip";
  struct Case {
    std::string name;
    bool listed;
  };
  for (const Case& c : {Case{"upper.ZIP", true}, Case{"mixed.Zip", true},
                        Case{"renamed.bin", false}, Case{"zip", false}}) {
    SCOPED_TRACE(c.name);
    fs::copy_file(archive, dir.path() / c.name);
    const auto result = FileInspector().inspect(dir.path() / c.name);
    ASSERT_TRUE(result);
    EXPECT_EQ(hasSection(*result, "ZIP Archive Contents"), c.listed);
    EXPECT_EQ(hasSection(*result, "Safe Inspection"), c.listed);
  }
}

TEST(ContainerSteps, theInventoryFollowsTheHealthCheckAndPrecedesTheFindingsDefault) {
  const auto result = FileInspector().inspect(kFixtures / "listing.zip");
  ASSERT_TRUE(result);
  const auto titles = test::titlesOf(result->sections);
  const auto health = std::find(titles.begin(), titles.end(), "File Health");
  ASSERT_NE(health, titles.end());
  ASSERT_NE(health + 1, titles.end());
  EXPECT_EQ(*(health + 1), "ZIP Archive Contents");
  EXPECT_EQ(result->privacyFindings.front().title, "Visual media is present");

  const auto folder = FileInspector().inspect(kFixtures);
  ASSERT_TRUE(folder);
  EXPECT_EQ(folder->sections.at(1).title, "Folder Contents");
}

TEST(ContainerSteps, aStopThroughTheInspectorEndsTheWalkButNotTheInspection) {
  TempDir dir;
  for (int i = 0; i < 10; ++i) dir.write("f" + std::to_string(i), "x");
  std::stop_source stop;
  stop.request_stop();
  int progressCalls = 0;
  const InspectionControl control{stop.get_token(), [&](std::int64_t) { ++progressCalls; }};
  const auto result = FileInspector().inspect(test::openedItem(dir.path()), control);
  ASSERT_FALSE(result.sections.empty());
  EXPECT_EQ(result.rawMetadata.at("Container Files"), "0");
  EXPECT_EQ(progressCalls, 0);
}

TEST(ContainerSteps, aStoppedInspectionOfAFileSkipsItsFingerprintAndTheAnalysesAfterItsHealth) {
  TempDir dir;
  const auto file = dir.write("notes.txt", "Field notes\nNothing to see here.\n");
  std::stop_source stop;
  stop.request_stop();
  const auto result =
      FileInspector().inspect(test::openedItem(file), InspectionControl{stop.get_token()});
  EXPECT_EQ(test::titlesOf(result.sections),
            (std::vector<std::string>{"File", "Identity & Integrity", "Type Verification",
                                      "File Health"}));
  EXPECT_EQ(result.rawMetadata.count("File SHA-256"), 0u);
  EXPECT_FALSE(result.privacyFindings.empty());
}

}  // namespace
}  // namespace lumenscribe
