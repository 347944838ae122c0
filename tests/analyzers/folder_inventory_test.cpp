// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/folder_inventory.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <fstream>

#include "test_files.h"

namespace lumenscribe {
namespace {

namespace fs = std::filesystem;
using test::rowsOf;
using test::TempDir;

Accumulators inventory(const fs::path& folder, const InspectionControl& control = {}) {
  Accumulators accumulators;
  inventoryFolder(test::openedItem(folder), accumulators, control);
  return accumulators;
}

std::string rowValue(const Accumulators& accumulators, const char* title, const char* label) {
  return test::rowValue(accumulators.sections, title, label);
}

std::vector<std::string> previewOf(const Accumulators& accumulators) {
  std::vector<std::string> samples;
  for (const auto& [label, value] : rowsOf(accumulators.sections, "Contents Preview")) {
    samples.push_back(value);
  }
  return samples;
}

void makeExecutable(const fs::path& path, bool executable) {
  fs::permissions(path, executable ? fs::perms(0755) : fs::perms(0644));
}

TEST(FolderInventory, walksEachFolderBeforeItsNextSiblingAndShowsPathsBelowTheRoot) {
  TempDir dir;
  fs::create_directories(dir.path() / "Photos" / "2024");
  dir.write("Photos/2024/beach.jpg", "j");
  EXPECT_EQ(previewOf(inventory(dir.path())),
            (std::vector<std::string>{"📁 Photos", "📁 Photos/2024", "Photos/2024/beach.jpg"}));
  for (int i = 0; i < 25; ++i) dir.write("note" + std::to_string(i) + ".txt", "12345");
  const Accumulators accumulators = inventory(dir.path());
  EXPECT_EQ(rowValue(accumulators, "Folder Contents", "Files"), "26");
  EXPECT_EQ(rowValue(accumulators, "Folder Contents", "Folders"), "2");
  EXPECT_EQ(accumulators.rawMetadata.at("Container Contents Bytes"), "126");
  EXPECT_EQ(rowValue(accumulators, "Folder Contents", "Top Types"), "TXT × 25 · JPG × 1");
  EXPECT_EQ(previewOf(accumulators).size(), 20u);
}

TEST(FolderInventory, judgesHiddenExecutableArchiveAndFlaggedFilesAsAFolderHoldsThem) {
  TempDir dir;
  fs::create_directories(dir.path() / ".config");  // a hidden folder is not counted hidden
  dir.write(".profile", "export A=1\n");
  dir.write("build", "#!/bin/sh\n");  // executable by permission, no extension
  makeExecutable(dir.path() / "build", true);
  dir.write("setup.exe", "MZ");  // executable-looking, but without the permission
  makeExecutable(dir.path() / "setup.exe", false);
  dir.write("archive.tar.gz", "gz");
  dir.write("notes.txt", "n");
  dir.write("Essex map.pdf", "%PDF");
  const Accumulators accumulators = inventory(dir.path());
  // .profile has no extension: a name that starts with its only dot.
  EXPECT_EQ(test::block(accumulators.rawMetadata),
            "Container Audio: 0\nContainer Contents Bytes: 30\nContainer Documents: 2\n"
            "Container Double Extensions: 1\nContainer Executables: 1\nContainer Files: 6\n"
            "Container Flagged Names: 1\nContainer Folders: 1\nContainer Hidden Items: 1\n"
            "Container Images: 0\nContainer Nested Archives: 1\nContainer Type .exe: 1\n"
            "Container Type .gz: 1\nContainer Type .pdf: 1\nContainer Type .txt: 1\n"
            "Container Videos: 0\n");
  EXPECT_EQ(rowValue(accumulators, "Folder Contents", "Executables"), "1");
  EXPECT_EQ(
      test::titlesOf(accumulators.findings),
      (std::vector<std::string>{"Double-extension filenames found",
                                "Potentially sensitive filenames found", "Hidden items are present",
                                "Executable content is present", "Nested archives are present"}));
}

TEST(FolderInventory, aPackageInsideCountsAsOneFolderAndIsNotEntered) {
  TempDir dir;
  fs::create_directories(dir.path() / "Tool.app" / "Contents" / "MacOS");
  dir.write("Tool.app/Contents/MacOS/tool", "#!/bin/sh\n");
  dir.write("Tool.app/Contents/Info.plist", "<plist/>");
  fs::create_directories(dir.path() / "Notes.RTFD");
  dir.write("Notes.RTFD/TXT.rtf", "{\\rtf1}");
  const Accumulators accumulators = inventory(dir.path());
  EXPECT_EQ(rowValue(accumulators, "Folder Contents", "Folders"), "2");
  EXPECT_EQ(rowValue(accumulators, "Folder Contents", "Files"), "0");
  // Dropped itself, a package is walked and published as a package.
  const Accumulators package = inventory(dir.path() / "Tool.app");
  EXPECT_EQ(rowValue(package, "Package Contents", "Files"), "2");
  EXPECT_EQ(package.summaryItems.back(), "Package Contents");
}

TEST(FolderInventory, symbolicLinksAreEntriesNeverFollowedSoALoopCannotTrapTheWalk) {
  TempDir dir;
  fs::create_directories(dir.path() / "inner");
  dir.write("inner/real.txt", "r");
  fs::create_directory_symlink(".", dir.path() / "inner" / "self");
  fs::create_directory_symlink(dir.path(), dir.path() / "root");
  fs::create_symlink("b", dir.path() / "a");
  fs::create_symlink("a", dir.path() / "b");
  const Accumulators accumulators = inventory(dir.path());
  // real.txt and the four links are files; only "inner" is a folder.
  EXPECT_EQ(rowValue(accumulators, "Folder Contents", "Files"), "5");
  EXPECT_EQ(rowValue(accumulators, "Folder Contents", "Folders"), "1");
  // A link's size is its own (the length of what it points to), never its target's.
  EXPECT_EQ(accumulators.rawMetadata.at("Container Contents Bytes"),
            std::to_string(1 + 1 + dir.path().string().size() + 1 + 1));
}

TEST(FolderInventory, aFifoAndASocketCountAsFilesWithoutBeingOpened) {
  TempDir dir;
  // Opening this FIFO for reading would block for ever: the test finishing shows it wasn't.
  ASSERT_EQ(::mkfifo((dir.path() / "pipe").c_str(), 0755), 0);
  const std::string socketPath = (dir.path() / "socket").string();
  const platform::UniqueFd listener(::socket(AF_UNIX, SOCK_STREAM, 0));
  sockaddr_un address{AF_UNIX, {}};
  ASSERT_LT(socketPath.copy(address.sun_path, sizeof address.sun_path - 1),
            sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(listener.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ::chmod(socketPath.c_str(), 0755);

  const Accumulators accumulators = inventory(dir.path());
  EXPECT_EQ(rowValue(accumulators, "Folder Contents", "Files"), "2");
  // Their execute bits make no executable: only a regular file can be run.
  EXPECT_EQ(accumulators.rawMetadata.at("Container Executables"), "0");
}

TEST(FolderInventory, oddNamesAreCountedWholeAndPreviewedAsValidText) {
  TempDir dir;
  dir.write("two\nlines.txt", "1");
  dir.write("caf\xE9.txt", "2");   // Latin-1, not UTF-8
  dir.write("my files.txt", "3");  // "files" only filters ZIP listings
  dir.write("Caf\u00C9.PNG", "4");
  const Accumulators accumulators = inventory(dir.path());
  EXPECT_EQ(rowValue(accumulators, "Folder Contents", "Files"), "4");
  EXPECT_EQ(accumulators.rawMetadata.at("Container Type .txt"), "3");
  EXPECT_EQ(accumulators.rawMetadata.at("Container Type .png"), "1");
  std::vector<std::string> preview = previewOf(accumulators);
  std::sort(preview.begin(), preview.end());
  EXPECT_EQ(preview, (std::vector<std::string>{"Caf\u00C9.PNG", "caf\uFFFD.txt", "my files.txt",
                                               "two\nlines.txt"}));
}

TEST(FolderInventory, judgesFromTheWalkingUsersRightsAndSkipsWhatItMayNotList) {
  TempDir dir;
  fs::create_directories(dir.path() / "locked");
  dir.write("locked/secret.txt", "s");
  dir.write("open.txt", "o");
  dir.write("owners-only.sh", "#!/bin/sh\n");
  fs::permissions(dir.path() / "owners-only.sh", fs::perms(0700));
  fs::permissions(dir.path() / "locked", fs::perms::none);
  // Files / folders / executables.
  const auto walk = [&] {
    const Accumulators accumulators = inventory(dir.path());
    return accumulators.rawMetadata.at("Container Files") + "/" +
           accumulators.rawMetadata.at("Container Folders") + "/" +
           accumulators.rawMetadata.at("Container Executables");
  };
  if (!test::runningAsRoot()) {
    // Our own script is ours to run; the locked folder is counted, its contents are not.
    EXPECT_EQ(walk(), "2/1/1");
    return;
  }
  // Root reads every folder and runs every script, so the walk runs as nobody in a child
  // process: the folder is nobody's, the script stays root's.
  ASSERT_EQ(::chown(dir.path().c_str(), 65534, 65534), 0);
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    ::close(ends[0]);
    if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(2);
    const std::string answer = walk();
    const bool written =
        ::write(ends[1], answer.data(), answer.size()) == static_cast<ssize_t>(answer.size());
    ::_exit(written ? 0 : 3);
  }
  ::close(ends[1]);
  char buffer[64];
  const ssize_t count = ::read(ends[0], buffer, sizeof buffer);
  ::close(ends[0]);
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  // open.txt and owners-only.sh, which nobody may not run; the locked folder, not its file.
  EXPECT_EQ(std::string(buffer, static_cast<std::size_t>(std::max<ssize_t>(count, 0))), "2/1/0");
}

TEST(FolderInventory, aFolderThatCannotBeListedAddsNothing) {
  if (test::runningAsRoot()) GTEST_SKIP() << "root lists every folder";
  TempDir dir;
  fs::create_directories(dir.path() / "locked");
  fs::permissions(dir.path() / "locked", fs::perms::none);
  EXPECT_TRUE(inventory(dir.path() / "locked").sections.empty());
}

TEST(FolderInventory, previewPathsLoseEveryCopyOfTheRootsPathNotJustTheFirst) {
  TempDir dir;
  // A folder chain that spells the walked folder's own path twice below it.
  const fs::path nested =
      dir.path() / "copy" / dir.path().relative_path() / "again" / dir.path().relative_path();
  fs::create_directories(nested);
  std::ofstream(nested / "note.txt") << "n";
  const std::vector<std::string> preview = previewOf(inventory(dir.path()));
  ASSERT_FALSE(preview.empty());
  EXPECT_EQ(preview.back(), "copyagainnote.txt");
}

}  // namespace
}  // namespace lumenscribe
