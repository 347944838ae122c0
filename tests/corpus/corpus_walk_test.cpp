// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "lumenscribe/file_inspector.h"
#include "report/json_report.h"
#include "report/text_report.h"

namespace lumenscribe {
namespace {

struct Stamp {
  off_t size;
  timespec modified;
  timespec changed;
};

Stamp stampOf(const std::filesystem::path& path) {
  struct stat status {};
  ::lstat(path.c_str(), &status);
  return {status.st_size, status.st_mtim, status.st_ctim};
}

bool operator==(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

// Real files from cameras, phones, encoders and archivers: every one must be inspected
// without a crash, a hang or a write, and give a well-formed result.
TEST(Corpus, everyRealWorldFileIsInspectedWithoutHarm) {
  const std::filesystem::path corpus = LUMENSCRIBE_CORPUS_DIR;
  if (!std::filesystem::is_directory(corpus)) {
    GTEST_SKIP() << "no sample corpus at " << corpus << "; nothing to walk";
  }
  std::vector<std::filesystem::path> items{corpus};
  for (const auto& entry : std::filesystem::recursive_directory_iterator(corpus)) {
    items.push_back(entry.path());
  }
  const FileInspector inspector;
  int inspected = 0;
  for (const auto& item : items) {
    SCOPED_TRACE(item.string());
    const Stamp before = stampOf(item);
    const auto result = inspector.inspect(item);
    ASSERT_TRUE(result) << result.error().message();
    ++inspected;
    EXPECT_FALSE(result->sections.empty());
    // Real files must never be what stops a decoder: a crash or a hang here is a bug of ours
    // or of a library that a hostile file could aim at too.
    const auto health = result->rawMetadata.find("File Health Detail");
    if (health != result->rawMetadata.end()) {
      EXPECT_EQ(health->second.find("stopped while reading"), std::string::npos);
    }
    EXPECT_FALSE(result->privacyFindings.empty());
    EXPECT_FALSE(buildTextReport(*result).empty());
    EXPECT_FALSE(resultJson(*result).empty());
    const Stamp after = stampOf(item);
    EXPECT_EQ(after.size, before.size);
    EXPECT_TRUE(after.modified == before.modified);
    EXPECT_TRUE(after.changed == before.changed);
  }
  EXPECT_GT(inspected, 400);
}

}  // namespace
}  // namespace lumenscribe
