// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/basic_facts.h"

#include <gtest/gtest.h>

namespace lumenscribe {
namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

Pairs pairs(const std::vector<InsightRow>& rows) {
  Pairs out;
  for (const auto& row : rows) out.emplace_back(row.label, row.value);
  return out;
}

TEST(BasicFileFacts, givesOnlyTheRowsItHasFactsForInTheirOrder) {
  ItemFacts bare;
  ItemFacts photo;
  photo.name = "IMG_0042.JPG";
  photo.fileSize = 0;
  photo.creationDate = Timestamp{};
  photo.modificationDate = Timestamp{};
  photo.contentType = ContentType("image/jpeg", "JPEG image");
  ItemFacts package;
  package.isDirectory = true;
  package.isPackage = true;
  package.contentType = ContentType("inode/directory", std::nullopt);
  ItemFacts folder = package;
  folder.isPackage = false;
  const std::string epoch = "Jan 1, 1970, 12:00:00\u202FAM";
  struct Case {
    const char* path;
    const ItemFacts& facts;
    Pairs rows;
  };
  const Case cases[] = {
      {"/data/blob",
       bare,
       {{"Name", "blob"}, {"Type", "Unknown"}, {"Extension", "None"}, {"Path", "/data/blob"}}},
      {"/p/IMG_0042.JPG",
       photo,
       {{"Name", "IMG_0042.JPG"},
        {"Type", "JPEG image"},
        {"Size", "Zero KB"},
        {"Created", epoch},
        {"Modified", epoch},
        {"Extension", "jpg"},
        {"Path", "/p/IMG_0042.JPG"}}},
      {"/p/Tool.app",
       package,
       {{"Name", "Tool.app"},
        {"Type", "inode/directory"},
        {"Container Type", "macOS Package"},
        {"Path", "/p/Tool.app"}}},
      {"/p/Photos",
       folder,
       {{"Name", "Photos"},
        {"Type", "inode/directory"},
        {"Container Type", "Folder"},
        {"Path", "/p/Photos"}}},
  };
  for (const Case& c : cases) EXPECT_EQ(pairs(basicFileFacts(c.path, c.facts)), c.rows) << c.path;
  // Letters beyond ASCII are lower-cased too; bytes that are not UTF-8 are replaced.
  EXPECT_EQ(pairs(basicFileFacts("/p/map.\u00C9PS", bare))[2].second, "\u00E9ps");
  EXPECT_EQ(pairs(basicFileFacts("/p/caf\xE9.txt", bare))[0].second, "caf\uFFFD.txt");
}

}  // namespace
}  // namespace lumenscribe
