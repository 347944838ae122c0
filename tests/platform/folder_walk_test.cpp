// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/folder_walk.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <set>

#include "test_files.h"

namespace lumenscribe::platform {
namespace {

namespace fs = std::filesystem;
using test::TempDir;

UniqueFd openFolder(const fs::path& path) {
  return UniqueFd(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

// Every entry's path below the walked folder, in walk order; `onEntry` runs after each.
std::vector<std::string> walkPaths(int folderFd,
                                   const std::function<void(const FolderEntry&)>& onEntry = {}) {
  std::vector<std::string> paths;
  FolderWalk walk(folderFd);
  while (const FolderEntry* entry = walk.next()) {
    paths.push_back(std::string(entry->parentPath) + std::string(entry->name));
    if (onEntry) onEntry(*entry);
  }
  return paths;
}

// A folder outside the walked one, which a swapped-in link would lead to.
struct Outside {
  TempDir dir;
  Outside() {
    fs::create_directories(dir.path() / "elsewhere");
    dir.write("elsewhere/outside-1.txt", "o");
    dir.write("elsewhere/outside-2.txt", "o");
  }
  fs::path elsewhere() const { return dir.path() / "elsewhere"; }
};

TEST(FolderWalk, aFolderSwappedForASymbolicLinkDuringTheWalkIsNotEntered) {
  Outside outside;
  TempDir dir;
  fs::create_directories(dir.path() / "sub");
  dir.write("sub/inside.txt", "i");
  const UniqueFd folder = openFolder(dir.path());

  bool swapped = false;
  const auto paths = walkPaths(folder.get(), [&](const FolderEntry& entry) {
    // Between seeing "sub" and entering it, "sub" becomes a link to a folder outside.
    if (entry.name == "sub" && !swapped) {
      fs::rename(dir.path() / "sub", outside.dir.path() / "sub-moved");
      fs::create_directory_symlink(outside.elsewhere(), dir.path() / "sub");
      swapped = true;
    }
  });
  ASSERT_TRUE(swapped);
  for (const auto& path : paths) {
    EXPECT_EQ(path.find("outside"), std::string::npos) << path;
    EXPECT_FALSE(path.starts_with("sub/")) << path;
  }
}

TEST(FolderWalk, theWalkedFolderReplacedByALinkMidWalkIsStillTheOneWalked) {
  Outside outside;
  TempDir dir;
  const fs::path root = dir.path() / "root";
  fs::create_directories(root / "a");
  fs::create_directories(root / "b");
  dir.write("root/a/1.txt", "1");
  dir.write("root/b/2.txt", "2");
  const UniqueFd folder = openFolder(root);

  bool swapped = false;
  const auto paths = walkPaths(folder.get(), [&](const FolderEntry&) {
    if (swapped) return;
    fs::rename(root, dir.path() / "root-moved");
    fs::create_directory_symlink(outside.elsewhere(), root);
    swapped = true;
  });
  const std::set<std::string> walked(paths.begin(), paths.end());
  EXPECT_EQ(walked, (std::set<std::string>{"a", "a/1.txt", "b", "b/2.txt"}));
}

TEST(FolderWalk, aTreeDeeperThanTheOpenFolderLimitIsWalkedWholeAndInOrder) {
  constexpr int kDepth = static_cast<int>(FolderWalk::kMaxOpenFolders) * 3;
  constexpr int kMovedLevel = static_cast<int>(FolderWalk::kMaxOpenFolders) + 8;
  // Once without interference, once with a closed ancestor moved out of the tree while the
  // walk is at the bottom: ".." then leads elsewhere, and the way back is found from the top.
  for (const bool moveAncestor : {false, true}) {
    SCOPED_TRACE(moveAncestor ? "ancestor moved" : "undisturbed");
    TempDir dir;
    fs::create_directories(dir.path() / "root");
    fs::path level = dir.path() / "root";
    fs::path movedLevel;
    std::set<std::string> expected;
    std::string relative;
    for (int depth = 0; depth < kDepth; ++depth) {
      // Files on both sides of "d" in name order; within a folder the walk goes in the file
      // system's order, so many of them come after the walk returns from "d".
      for (const char* name : {"a.txt", "b.txt", "x.txt", "y.txt", "z.txt"}) {
        std::ofstream(level / name) << depth;
        expected.insert(relative + name);
      }
      level /= "d";
      fs::create_directory(level);
      if (depth + 1 == kMovedLevel) movedLevel = level;
      relative += "d";
      expected.insert(relative);
      relative += "/";
    }
    const UniqueFd folder = openFolder(dir.path() / "root");
    bool moved = false;
    const auto paths = walkPaths(folder.get(), [&](const FolderEntry& entry) {
      if (!moveAncestor || moved || entry.parentPath.size() < 2 * (kDepth - 1)) return;
      fs::rename(movedLevel, dir.path() / "moved");
      moved = true;
    });
    EXPECT_EQ(moved, moveAncestor);
    // Depth first: every path comes after the folder that holds it, and none twice.
    std::set<std::string> seen;
    for (const auto& path : paths) {
      const auto slash = path.rfind('/');
      if (slash != std::string::npos) {
        EXPECT_TRUE(seen.contains(path.substr(0, slash))) << path;
      }
      EXPECT_TRUE(seen.insert(path).second) << path;
    }
    EXPECT_EQ(seen, expected);
  }
}

TEST(FolderWalk, leavesTheCallersDescriptorWhereItWas) {
  TempDir dir;
  dir.write("one.txt", "1");
  const UniqueFd folder = openFolder(dir.path());
  EXPECT_EQ(walkPaths(folder.get()).size(), 1u);
  EXPECT_EQ(::lseek(folder.get(), 0, SEEK_CUR), 0);
  EXPECT_EQ(walkPaths(folder.get()).size(), 1u);  // and can walk it again
}

TEST(FolderWalk, nothingToWalkWithoutAFolder) {
  TempDir dir;
  const fs::path file = dir.write("plain.txt", "p");
  const UniqueFd notAFolder(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
  EXPECT_FALSE(FolderWalk(notAFolder.get()).isListable());
  EXPECT_FALSE(FolderWalk(-1).isListable());
  EXPECT_EQ(FolderWalk(-1).next(), nullptr);
}

}  // namespace
}  // namespace lumenscribe::platform
