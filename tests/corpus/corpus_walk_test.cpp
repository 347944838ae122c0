// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <set>

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
    EXPECT_FALSE(result->privacyFindings.empty());
    EXPECT_FALSE(buildTextReport(*result).empty());
    EXPECT_FALSE(resultJson(*result).empty());
    if (std::filesystem::is_regular_file(item)) {
      // Every file is typed and judged, with a verdict from the closed vocabulary.
      static const std::set<std::string> verdicts = {"Empty file",      "Unreadable",
                                                     "Looks intact",    "Verification limited",
                                                     "Possible damage", "Possible read problem"};
      EXPECT_TRUE(result->rawMetadata.contains("Type Verification Result"));
      EXPECT_TRUE(verdicts.contains(result->rawMetadata.at("File Health Assessment")));
    }
    const Stamp after = stampOf(item);
    EXPECT_EQ(after.size, before.size);
    EXPECT_TRUE(after.modified == before.modified);
    EXPECT_TRUE(after.changed == before.changed);
  }
  EXPECT_GT(inspected, 400);
}

}  // namespace
}  // namespace lumenscribe
