// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/identity_integrity.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <stop_token>

#include "test_files.h"

namespace lumenscribe {
namespace {

using test::TempDir;

std::map<std::string, std::string> rowsOf(const Accumulators& accumulators) {
  const test::Rows rows = test::rowsOf(accumulators.sections, "Identity & Integrity");
  return {rows.begin(), rows.end()};
}

TEST(FileFingerprint, hashesEveryByteAcrossChunkBoundaries) {
  TempDir dir;
  struct Case {
    std::size_t size;
    char fill;
    const char* digest;
  };
  for (const Case& c :
       {Case{0, 0, "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        Case{1024 * 1024, 0, "30e14955ebf1352266dc2ff8067e68104607e750abb9d3b36582b8af909fcb58"},
        Case{1024 * 1024 + 1, 0,
             "2cb74edba754a81d121c9db6833704a8e7d417e5b13d1a19f4a52f007d644264"}}) {
    const auto file = dir.write("f" + std::to_string(c.size), std::string(c.size, c.fill));
    EXPECT_EQ(fileFingerprint(file), c.digest) << c.size;
  }
  EXPECT_EQ(fileFingerprint(dir.write("abc", "abc")),
            "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(fileFingerprint(dir.path() / "missing"), std::nullopt);
  // A directory opens but cannot be read: no digest rather than the digest of nothing.
  EXPECT_EQ(fileFingerprint(dir.path()), std::nullopt);
}

// The window shows how far a long fingerprint has come, and its Cancel must end it at once.
TEST(FileFingerprint, reportsEveryChunkAndEndsWithoutADigestWhenStopped) {
  TempDir dir;
  constexpr std::int64_t kMiB = 1024 * 1024;
  const auto file = dir.write("big", std::string(5 * kMiB / 2, 'a'));
  const platform::OpenedItem item = test::openedItem(file);
  std::vector<std::pair<std::int64_t, std::int64_t>> reports;
  InspectionControl control;
  control.onBytesRead = [&](std::int64_t read, std::int64_t total) {
    reports.emplace_back(read, total);
  };
  EXPECT_EQ(fingerprintOf(item.descriptor(), item.size(), control), fileFingerprint(file));
  using Reports = decltype(reports);
  EXPECT_EQ(
      reports,
      (Reports{{kMiB, 5 * kMiB / 2}, {2 * kMiB, 5 * kMiB / 2}, {5 * kMiB / 2, 5 * kMiB / 2}}));

  std::stop_source stop;
  reports.clear();
  control.stopToken = stop.get_token();
  control.onBytesRead = [&](std::int64_t read, std::int64_t total) {
    reports.emplace_back(read, total);
    stop.request_stop();
  };
  EXPECT_EQ(fingerprintOf(item.descriptor(), item.size(), control), std::nullopt);
  EXPECT_EQ(reports.size(), 1u);
}

TEST(IdentityAndIntegrity, reportsFingerprintOwnershipAndModeBits) {
  TempDir dir;
  const auto file = dir.write("setuid-tool", "x");
  ASSERT_EQ(::chmod(file.c_str(), 04755), 0);
  Accumulators accumulators;
  addIdentityAndIntegrity(test::openedItem(file), accumulators);

  EXPECT_EQ(accumulators.summaryItems, std::vector<std::string>{"Identity & Integrity"});
  EXPECT_TRUE(accumulators.findings.empty());

  const auto rows = rowsOf(accumulators);
  EXPECT_EQ(rows.at("Permissions"), "4755");
  EXPECT_EQ(rows.at("Filesystem Type"), "Regular file");
  EXPECT_EQ(rows.at("SHA-256"), "2d711642b726b04401627ca9fbac32f5c8530fb1903cc4db02258717921a4881");
  EXPECT_FALSE(rows.at("Owner").empty());
  // Every row has its raw twin with the same text.
  EXPECT_EQ(accumulators.rawMetadata, (RawMetadata{{"File SHA-256", rows.at("SHA-256")},
                                                   {"File Owner", rows.at("Owner")},
                                                   {"File Group", rows.at("Group")},
                                                   {"File POSIX Permissions", "4755"},
                                                   {"File Filesystem Type", "Regular file"}}));

  ASSERT_EQ(::chmod(file.c_str(), 0), 0);
  Accumulators locked;
  addIdentityAndIntegrity(test::openedItem(file), locked);
  EXPECT_EQ(rowsOf(locked).at("Permissions"), "000");
}

TEST(IdentityAndIntegrity, describesALinkAsTheLinkItIs) {
  TempDir dir;
  const auto target = dir.write("target", "x");
  const auto link = dir.path() / "link";
  std::filesystem::create_symlink(target, link);
  Accumulators accumulators;
  addIdentityAndIntegrity(test::openedItem(link), accumulators);
  const auto rows = rowsOf(accumulators);
  EXPECT_EQ(rows.at("Filesystem Type"), "Symbolic link");
  EXPECT_EQ(rows.at("SHA-256"), *fileFingerprint(target));  // the content is the target's
}

// The item as opened is fingerprinted: bytes added later do not count, and a file that
// shrank has no digest rather than the digest of a prefix. (A file replaced after the open:
// see the inspector's tests.)
TEST(IdentityAndIntegrity, fingerprintsTheBytesTheItemHadWhenOpened) {
  TempDir dir;
  const auto file = dir.write("changes.txt", "abc");
  const platform::OpenedItem grown = test::openedItem(file);
  std::ofstream(file, std::ios::app) << "def";
  Accumulators first;
  addIdentityAndIntegrity(grown, first);
  EXPECT_EQ(rowsOf(first).at("SHA-256"),
            "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");

  const platform::OpenedItem shrunk = test::openedItem(file);
  std::filesystem::resize_file(file, 2);
  Accumulators second;
  addIdentityAndIntegrity(shrunk, second);
  EXPECT_EQ(rowsOf(second).count("SHA-256"), 0u);
  EXPECT_EQ(second.rawMetadata.count("File SHA-256"), 0u);
}

}  // namespace
}  // namespace lumenscribe
