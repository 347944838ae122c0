// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/content_detection.h"

#include <gtest/gtest.h>

#include "test_files.h"

namespace lumenscribe {

void PrintTo(const ContentSignature& signature, std::ostream* out) {
  *out << "{" << signature.typeName << ", " << signature.category << ", " << signature.mimeType
       << ", " << signature.alsoAudio << "}";
}

namespace {

using namespace std::string_literals;
using test::TempDir;

const std::filesystem::path& kData = test::kData;
using test::fileBytes;

std::span<const std::byte> bytesOf(const std::string& text) {
  return std::as_bytes(std::span(text.data(), text.size()));
}

// Detection as an opened item feeds it: the first 16 KiB, the whole file as its tail.
std::optional<ContentSignature> detect(const std::string& file, bool executable = false) {
  const std::string head = file.substr(0, platform::OpenedItem::kHeadSize);
  return detectContent({bytesOf(head), static_cast<std::int64_t>(file.size()), executable,
                        [&] { return std::optional(bytesOf(file)); }});
}

// (What the MIME database names for real files is checked through the type verification and
// the health check's choice of test, which follow from it.)
TEST(ContentDetection, theMimeDatabaseNamesWhatTheTableDoesNotKnow) {
  EXPECT_EQ(detect(fileBytes(kData / "type_health/intact.xz")),
            (ContentSignature{"XZ archive", "compressed", "application/x-xz", false}));
  EXPECT_EQ(detect(fileBytes(kData / "type_health/tone.flac")),
            (ContentSignature{"FLAC audio", "audio", "audio/flac", false}));
  // Printable, and a rule for an old font format takes it: it stays text.
  EXPECT_EQ(detect(fileBytes(kData / "type_health/metrics.afm"))->typeName, "Plain text");
}

TEST(ContentDetection, aScriptIsAProgramOnlyWhenItMayBeRun) {
  const std::string script = "#!/bin/sh\necho hello\n";
  EXPECT_EQ(detect(script, false),
            (ContentSignature{"shell script", "text", "application/x-shellscript", false}));
  EXPECT_EQ(detect(script, true),
            (ContentSignature{"shell script", "executable", "application/x-shellscript", false}));
  // A binary program is one whatever its permissions.
  EXPECT_EQ(detect(fileBytes("/bin/true"), false)->category, "executable");
}

TEST(ContentDetection, aQuotedPdfHeaderOrAStrayDirectoryRecordMakesNoFormat) {
  const std::string quoted =
      "Notes on file formats.\n PDF files begin with %PDF-1.7 and end "
      "with a trailer; this note is neither.\n";
  EXPECT_EQ(detect(quoted)->typeName, "Plain text");
  // A record whose comment would run past the end is not the end of a ZIP.
  std::string record = "PK\x05\x06"s + std::string(16, '\0') + "\x10\0"s;
  EXPECT_FALSE(detect(std::string(100, '\x02') + record).has_value());
}

TEST(ContentDetection, theTailIsReadOnlyWhenTheHeadLeavesTheQuestionOpen) {
  int reads = 0;
  const std::string png = fileBytes(kData / "health/intact.png");
  const std::string unknown(4096, '\x02');
  for (const std::string* file : {&png, &unknown}) {
    detectContent({bytesOf(*file), static_cast<std::int64_t>(file->size()), false, [&] {
                     ++reads;
                     return std::optional(bytesOf(*file));
                   }});
  }
  EXPECT_EQ(reads, 1);
}

TEST(ContentDetection, zipDirectoryRecordMustEndTheFileAndFollowItsDirectory) {
  const auto record = [](std::uint32_t directorySize, std::uint32_t directoryOffset,
                         std::uint16_t entries, const std::string& comment) {
    std::string bytes = "PK\x05\x06"s + std::string(4, '\0');
    for (int i = 0; i < 2; ++i) bytes += std::string{char(entries & 0xFF), char(entries >> 8)};
    for (std::uint32_t value : {directorySize, directoryOffset}) {
      for (int shift = 0; shift < 32; shift += 8) bytes += char((value >> shift) & 0xFF);
    }
    const auto length = static_cast<std::uint16_t>(comment.size());
    bytes += std::string{char(length & 0xFF), char(length >> 8)} + comment;
    return bytes;
  };
  const std::string directory = "PK\x01\x02"s + std::string(42, '\0') + "a.txt";
  struct Case {
    std::string name;
    std::string file;
    bool isZip;
  };
  const Case cases[] = {
      {"after its directory", std::string(300, 'x') + directory + record(51, 300, 1, ""), true},
      {"with a comment", std::string(300, 'x') + directory + record(51, 300, 1, "hi"), true},
      // Prepended bytes leave the recorded offset short of the real one.
      {"offset relative to a later start", std::string(300, 'x') + directory + record(51, 0, 1, ""),
       true},
      {"an empty archive", std::string(64, '\x01') + record(0, 0, 0, ""), true},
      {"bytes after it", std::string(300, 'x') + directory + record(51, 300, 1, "") + "!", false},
      {"no directory where it says",
       std::string(300, 'x') + std::string(51, 'y') + record(51, 300, 1, ""), false},
      {"a directory larger than the file", record(5000, 0, 1, ""), false},
      {"a ZIP64 record with its locator",
       std::string(40, 'x') + "PK\x06\x07"s + std::string(16, '\0') +
           record(0xFFFFFFFF, 0xFFFFFFFF, 1, ""),
       true},
      {"too short", "PK\x05\x06"s + std::string(10, '\0'), false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(endsWithZipDirectory(bytesOf(c.file), static_cast<std::int64_t>(c.file.size())),
              c.isZip);
  }
}

TEST(ContentDetection, anOpenedItemIsJudgedByItsBytesAndItsExecuteBit) {
  TempDir dir;
  const auto script = dir.write("tool", "#!/bin/sh\nexit 0\n");
  EXPECT_EQ(detectContentSignature(test::openedItem(script))->category, "text");
  std::filesystem::permissions(script, std::filesystem::perms::owner_exec,
                               std::filesystem::perm_options::add);
  EXPECT_EQ(detectContentSignature(test::openedItem(script))->category, "executable");

  EXPECT_EQ(detectContentSignature(test::openedItem(dir.write("empty", ""))), std::nullopt);
  EXPECT_EQ(detectContentSignature(test::openedItem(dir.path())), std::nullopt);
  // A ZIP past the head, found from the end through the item's descriptor.
  std::string large(64 * 1024, '\x02');
  large += fileBytes(kData / "health/intact.zip");
  EXPECT_EQ(detectContentSignature(test::openedItem(dir.write("large.bin", large)))->typeName,
            "ZIP archive");
}

}  // namespace
}  // namespace lumenscribe
