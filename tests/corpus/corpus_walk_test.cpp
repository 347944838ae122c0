// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <string>

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

const InsightSection* sectionTitled(const LumenscribeResult& result, std::string_view title) {
  for (const auto& section : result.sections) {
    if (section.title == title) return &section;
  }
  return nullptr;
}

std::string rowValue(const InsightSection& section, std::string_view label) {
  for (const auto& row : section.rows) {
    if (row.label == label) return row.value;
  }
  return {};
}

// What the PDF and text analyses add holds together, whatever the file.
void expectConsistentPdfAndText(const LumenscribeResult& result) {
  const InsightSection* document = sectionTitled(result, "Document");
  const InsightSection* structure = sectionTitled(result, "Document Structure");
  EXPECT_EQ(document == nullptr, structure == nullptr);
  if (structure != nullptr) {
    long withText = -1;
    long pages = -1;
    EXPECT_EQ(std::sscanf(rowValue(*structure, "Pages with Text").c_str(), "%ld of %ld", &withText,
                          &pages),
              2);
    EXPECT_LE(withText, pages);
    EXPECT_EQ(std::to_string(pages), result.rawMetadata.at("PDF Page Count"));
  }
  if (const InsightSection* text = sectionTitled(result, "Text Analysis")) {
    const std::string encoding = rowValue(*text, "Encoding");
    EXPECT_TRUE(encoding == "UTF-8" || encoding == "UTF-16" || encoding == "UTF-16 LE" ||
                encoding == "UTF-16 BE" || encoding == "UTF-32" || encoding == "Mac OS Roman")
        << encoding;
    EXPECT_GE(std::stol(rowValue(*text, "Lines")), 1);
    EXPECT_LE(std::stol(rowValue(*text, "Blank Lines")), std::stol(rowValue(*text, "Lines")));
    EXPECT_EQ(result.rawMetadata.at("Text Characters"), rowValue(*text, "Characters"));
  }
  // Contact data is counted, never shown.
  for (const auto& [key, value] : result.rawMetadata) {
    if (key.starts_with("PDF Content ") ||
        (key.starts_with("Text ") && key != "Text Encoding" && key != "Text Line Endings" &&
         key != "Text Source Type")) {
      EXPECT_EQ(value.find_first_not_of("0123456789"), std::string::npos) << key << ": " << value;
    }
  }
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
  int documents = 0;
  int texts = 0;
  for (const auto& item : items) {
    SCOPED_TRACE(item.string());
    const Stamp before = stampOf(item);
    const auto result = inspector.inspect(item);
    ASSERT_TRUE(result) << result.error().message();
    ++inspected;
    documents += sectionTitled(*result, "Document") != nullptr;
    texts += sectionTitled(*result, "Text Analysis") != nullptr;
    EXPECT_FALSE(result->sections.empty());
    EXPECT_FALSE(result->privacyFindings.empty());
    EXPECT_FALSE(buildTextReport(*result).empty());
    EXPECT_FALSE(resultJson(*result).empty());
    expectConsistentPdfAndText(*result);
    const Stamp after = stampOf(item);
    EXPECT_EQ(after.size, before.size);
    EXPECT_TRUE(after.modified == before.modified);
    EXPECT_TRUE(after.changed == before.changed);
  }
  EXPECT_GT(inspected, 400);
  EXPECT_GT(documents, 50);  // the PDFs that poppler opens
  EXPECT_GT(texts, 10);
}

}  // namespace
}  // namespace lumenscribe
