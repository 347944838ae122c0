// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/basic_facts.h"

#include <gtest/gtest.h>

namespace lumenscribe {
namespace {

std::vector<std::pair<std::string, std::string>> pairs(const std::vector<InsightRow>& rows) {
  std::vector<std::pair<std::string, std::string>> out;
  for (const auto& row : rows) out.emplace_back(row.label, row.value);
  return out;
}

using Pairs = std::vector<std::pair<std::string, std::string>>;

TEST(BasicFileFacts, givesTheAlwaysPresentRowsWhenTheFactsAreBare) {
  ItemFacts facts;
  EXPECT_EQ(
      pairs(basicFileFacts("/data/blob", facts)),
      (Pairs{
          {"Name", "blob"}, {"Type", "Unknown"}, {"Extension", "None"}, {"Path", "/data/blob"}}));
}

TEST(BasicFileFacts, ordersEveryRowAndLowerCasesTheExtension) {
  ItemFacts facts;
  facts.name = "IMG_0042.JPG";
  facts.fileSize = 0;
  facts.creationDate = Timestamp{};
  facts.modificationDate = Timestamp{};
  facts.contentType = ContentType("image/jpeg", "JPEG image");
  facts.isRegularFile = true;
  const auto rows = pairs(basicFileFacts("/p/IMG_0042.JPG", facts));
  ASSERT_EQ(rows.size(), 7u);
  EXPECT_EQ(rows[0], (std::pair<std::string, std::string>{"Name", "IMG_0042.JPG"}));
  EXPECT_EQ(rows[1].second, "JPEG image");
  EXPECT_EQ(rows[2], (std::pair<std::string, std::string>{"Size", "Zero KB"}));
  EXPECT_EQ(rows[3].first, "Created");
  EXPECT_EQ(rows[4].first, "Modified");
  EXPECT_EQ(rows[5], (std::pair<std::string, std::string>{"Extension", "jpg"}));
  EXPECT_EQ(rows[6], (std::pair<std::string, std::string>{"Path", "/p/IMG_0042.JPG"}));
  // Letters beyond ASCII are lower-cased too.
  EXPECT_EQ(pairs(basicFileFacts("/p/map.\u00C9PS", facts))[5].second, "\u00E9ps");
}

TEST(BasicFileFacts, describesDirectoriesByContainerTypeAndTheirOwnContentType) {
  ItemFacts facts;
  facts.isDirectory = true;
  facts.isPackage = true;
  facts.contentType = ContentType("inode/directory", std::nullopt);
  const auto rows = pairs(basicFileFacts("/p/Tool.app", facts));
  EXPECT_EQ(rows, (Pairs{{"Name", "Tool.app"},
                         {"Type", "inode/directory"},
                         {"Container Type", "macOS Package"},
                         {"Path", "/p/Tool.app"}}));
  facts.isPackage = false;
  EXPECT_EQ(pairs(basicFileFacts("/p/Photos", facts))[2].second, "Folder");
}

TEST(BasicFileFacts, showsNamesThatAreNotUtf8WithReplacementCharacters) {
  const auto rows = pairs(basicFileFacts("/p/caf\xE9.txt", ItemFacts{}));
  EXPECT_EQ(rows[0].second, "caf\uFFFD.txt");
  EXPECT_EQ(rows.back().second, "/p/caf\uFFFD.txt");
}

}  // namespace
}  // namespace lumenscribe
