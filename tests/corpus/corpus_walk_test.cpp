// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <set>
#include <string>

#include "cleancopy/clean_copy.h"
#include "lumenscribe/file_inspector.h"
#include "platform/opened_item.h"
#include "report/json_report.h"
#include "report/text_report.h"
#include "test_files.h"

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

bool hasSection(const LumenscribeResult& result, std::string_view title) {
  return std::any_of(result.sections.begin(), result.sections.end(),
                     [&](const InsightSection& section) { return section.title == title; });
}

bool hasFinding(const LumenscribeResult& result, std::string_view title) {
  return std::any_of(result.privacyFindings.begin(), result.privacyFindings.end(),
                     [&](const PrivacyFinding& finding) { return finding.title == title; });
}

// The image pass: each of its sections brings its finding (other analyzers may raise the
// same findings), and the camera photos with GPS show where they were taken.
void expectImagePassConsistent(const std::filesystem::path& item, const LumenscribeResult& result) {
  const std::pair<const char*, const char*> findingOf[] = {
      {"Location", "Location data is embedded"},
      {"Camera", "Camera details are visible"},
      {"Software & Creator", "Creation history is visible"}};
  for (const auto& [section, finding] : findingOf) {
    EXPECT_TRUE(!hasSection(result, section) || hasFinding(result, finding)) << section;
  }
  if (hasSection(result, "Camera") || hasSection(result, "Location")) {
    EXPECT_TRUE(hasSection(result, "Image"));
  }
  if (item.parent_path().filename() == "gps" && item.extension() == ".jpg") {
    EXPECT_TRUE(hasSection(result, "Location"));
    EXPECT_TRUE(result.rawMetadata.contains("{GPS}.LatitudeRef"));
  }
}

// Every item has system metadata; audio gets its section or FFmpeg's reason, video its
// section with the track counts; no real file stops the decoder.
void expectMediaAndSystemMetadata(const std::filesystem::path& item,
                                  const LumenscribeResult& result) {
  EXPECT_TRUE(hasSection(result, "System Metadata"));
  const auto opened = platform::openItem(item);
  ASSERT_TRUE(opened);
  const auto& type = opened->contentType();
  if (type && type->conformsTo(AbstractType::audio)) {
    const auto error = result.rawMetadata.find("Audio AVAudioFile Error");
    EXPECT_TRUE(hasSection(result, "Audio") || error != result.rawMetadata.end());
    if (error != result.rawMetadata.end()) {
      EXPECT_NE(error->second, "The decoder stopped on this file.");
    }
  }
  if (type && (type->conformsTo(AbstractType::movie) || type->conformsTo(AbstractType::video))) {
    ASSERT_TRUE(hasSection(result, "Video"));
    EXPECT_TRUE(result.rawMetadata.contains("Video Track Count"));
    EXPECT_TRUE(result.rawMetadata.contains("Video Audio Track Count"));
  }
}

// A folder's inventory counts what a plain recursive walk sees; a .zip file is listed or
// says why not.
void expectContainerListing(const std::filesystem::path& item, const LumenscribeResult& result) {
  if (std::filesystem::is_directory(item)) {
    std::int64_t files = 0, folders = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(item)) {
      ++(entry.is_directory() && !entry.is_symlink() ? folders : files);
    }
    EXPECT_TRUE(hasSection(result, "Folder Contents"));
    EXPECT_EQ(result.rawMetadata.at("Container Files"), std::to_string(files));
    EXPECT_EQ(result.rawMetadata.at("Container Folders"), std::to_string(folders));
  } else if (item.extension() == ".zip") {
    EXPECT_NE(hasSection(result, "ZIP Archive Contents"),
              result.rawMetadata.contains("ZIP Inspection Error"));
  }
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

// Every picture that is offered a clean copy gets a pixel-safe one that passes its own check
// (the same pixels, nothing personal left), or is refused one and would be asked about a
// standard copy; a decoder that stops on a real photo fails this too.
void expectCleanCopyKept(const std::filesystem::path& item, const std::filesystem::path& folder) {
  auto& decoder = test::sharedDecoder();
  if (!std::filesystem::is_regular_file(item) || !canMakeCleanCopy(item, decoder)) return;
  const CleanCopyResult result = makePixelSafeCopy(item, folder / "clean-copy", decoder);
  EXPECT_NE(result.state, CleanCopyState::failed) << result.message << " " << result.reason;
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
  const test::TempDir copies;
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
    // Real files must never be what stops a decoder: a crash or a hang here is a bug of ours
    // or of a library that a hostile file could aim at too.
    const auto health = result->rawMetadata.find("File Health Detail");
    if (health != result->rawMetadata.end()) {
      EXPECT_EQ(health->second.find("stopped while reading"), std::string::npos);
    }
    EXPECT_FALSE(result->privacyFindings.empty());
    EXPECT_FALSE(buildTextReport(*result).empty());
    EXPECT_FALSE(resultJson(*result).empty());
    expectImagePassConsistent(item, *result);
    expectContainerListing(item, *result);
    if (std::filesystem::is_regular_file(item)) {
      // Every file is typed and judged, with a verdict from the closed vocabulary.
      static const std::set<std::string> verdicts = {"Empty file",      "Unreadable",
                                                     "Looks intact",    "Verification limited",
                                                     "Possible damage", "Possible read problem"};
      EXPECT_TRUE(result->rawMetadata.contains("Type Verification Result"));
      EXPECT_TRUE(verdicts.contains(result->rawMetadata.at("File Health Assessment")));
    }
    expectConsistentPdfAndText(*result);
    expectMediaAndSystemMetadata(item, *result);
    expectCleanCopyKept(item, copies.path());
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
