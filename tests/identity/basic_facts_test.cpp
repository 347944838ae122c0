// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/basic_facts.h"

#include <gtest/gtest.h>

#include "test_files.h"

namespace lumenscribe {
namespace {

using test::Lines;
using test::lines;

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
  const struct {
    const char* path;
    const ItemFacts& facts;
    Lines rows;
  } cases[] = {
      {"/data/blob", bare, {"Name: blob", "Type: Unknown", "Extension: None", "Path: /data/blob"}},
      {"/p/IMG_0042.JPG",
       photo,
       {"Name: IMG_0042.JPG", "Type: JPEG image", "Size: Zero KB",
        "Created: Jan 1, 1970, 12:00:00\u202FAM", "Modified: Jan 1, 1970, 12:00:00\u202FAM",
        "Extension: jpg", "Path: /p/IMG_0042.JPG"}},
      {"/p/Tool.app",
       package,
       {"Name: Tool.app", "Type: inode/directory", "Container Type: macOS Package",
        "Path: /p/Tool.app"}},
      {"/p/Photos",
       folder,
       {"Name: Photos", "Type: inode/directory", "Container Type: Folder", "Path: /p/Photos"}},
  };
  for (const auto& c : cases) EXPECT_EQ(lines(basicFileFacts(c.path, c.facts)), c.rows) << c.path;
  // Letters beyond ASCII are lower-cased too; bytes that are not UTF-8 are replaced.
  EXPECT_EQ(lines(basicFileFacts("/p/map.\u00C9PS", bare))[2], "Extension: \u00E9ps");
  EXPECT_EQ(lines(basicFileFacts("/p/caf\xE9.txt", bare))[0], "Name: caf\uFFFD.txt");
}

}  // namespace
}  // namespace lumenscribe
