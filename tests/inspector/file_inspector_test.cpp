// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "lumenscribe/file_inspector.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>

#include "platform/decoder_client.h"
#include "platform/decoder_protocol.h"
#include "platform/opened_item.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

using test::TempDir;
using test::titlesOf;
using Titles = std::vector<std::string>;

const std::filesystem::path& kData = test::kData;

std::string rowValue(const LumenscribeResult& result, std::string_view title,
                     std::string_view label) {
  return test::rowValue(result.sections, title, label);
}

bool hasSection(const LumenscribeResult& result, std::string_view title) {
  const auto titles = titlesOf(result.sections);
  return std::find(titles.begin(), titles.end(), title) != titles.end();
}

// The titles of the sections after "File Health".
Titles titlesAfterHealth(const LumenscribeResult& result) {
  const auto titles = titlesOf(result.sections);
  const auto health = std::find(titles.begin(), titles.end(), "File Health");
  return health == titles.end() ? Titles{"<no health>"} : Titles(health + 1, titles.end());
}

// What every result holds; the result itself for the test to look at.
LumenscribeResult expectInvariants(Expected<LumenscribeResult> inspected) {
  if (!inspected) {
    ADD_FAILURE() << inspected.error().message();
    std::abort();
  }
  const LumenscribeResult& result = *inspected;
  EXPECT_TRUE(result.sections.at(0).title == "File" || result.sections[0].title == "Container");
  std::int64_t rows = 0;
  for (const auto& section : result.sections) rows += std::ssize(section.rows);
  EXPECT_EQ(result.summaryCount, rows);
  EXPECT_FALSE(result.summaryItems.empty());
  EXPECT_FALSE(result.privacyFindings.empty());
  auto items = result.summaryItems;
  std::sort(items.begin(), items.end());
  EXPECT_EQ(std::adjacent_find(items.begin(), items.end()), items.end());
  return std::move(inspected).value();
}

TEST(FileInspector, refusesSpecialFilesAndMissingItemsWithTheirMessages) {
  TempDir dir;
  const auto fifo = dir.path() / "pipe";
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  // Opening a FIFO with no writer would block this test forever; refusing it must not.
  for (const std::filesystem::path& special : {fifo, std::filesystem::path("/dev/null")}) {
    const auto result = FileInspector().inspect(special);
    ASSERT_FALSE(result) << special;
    EXPECT_EQ(result.error(), make_error_code(FileInspectionError::unsupportedFile));
    EXPECT_EQ(result.error().message(), "Lumenscribe could not inspect this file yet.");
  }

  const auto dangling = dir.path() / "dangling";
  std::filesystem::create_symlink(dir.path() / "nowhere", dangling);
  for (const auto& missing : {dangling, dir.path() / "absent"}) {
    const auto result = FileInspector().inspect(missing);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), std::errc::no_such_file_or_directory);
  }
}

TEST(FileInspector, inspectsARegularFileWithIdentityAndDefaultsAndNoDecoder) {
  TempDir dir;
  const auto file = dir.write("notes.txt", "hello\n");
  const FileInspector inspector;
  const auto& result = expectInvariants(inspector.inspect(file));
  EXPECT_EQ(result.displayName, "notes.txt");
  EXPECT_EQ(result.url, file);
  EXPECT_EQ(result.typeDescription, "plain text document");  // the MIME database's comment
  EXPECT_EQ(result.sections[0].systemImage, "doc.fill");
  EXPECT_EQ(rowValue(result, "File", "Size"), "6 bytes");
  EXPECT_EQ(rowValue(result, "Identity & Integrity", "Filesystem Type"), "Regular file");
  EXPECT_EQ(result.privacyFindings.back().title, "No obvious high-interest metadata found");

  ASSERT_TRUE(inspector.inspect(dir.path()));
  EXPECT_TRUE(inspector.decoder()->workerPids().empty());
  ASSERT_TRUE(inspector.inspect(kData / "health" / "intact.jpg"));
  EXPECT_FALSE(inspector.decoder()->workerPids().empty());
}

TEST(FileInspector, namesWhatTheContentProvesWhenItContradictsTheName) {
  struct Case {
    const char* file;
    const char* heading;
  };
  const Case cases[] = {
      {"jpeg_named.png", "JPEG image"},
      {"program_named.txt", "executable"},
      {"pdf_named.jpg", "PDF document"},
      {"photo.heic", "HEIF image"},  // no contradiction: the desktop's own name for it
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    const auto& result = expectInvariants(FileInspector().inspect(kData / "type_health" / c.file));
    EXPECT_EQ(result.typeDescription, c.heading);
    // The sections still come in step order (the image pass may follow).
    Titles titles = titlesOf(result.sections);
    titles.resize(std::min<std::size_t>(titles.size(), 4));
    EXPECT_EQ(titles, (Titles{"File", "Identity & Integrity", "Type Verification", "File Health"}));
  }
  // Content that no sniffing rule claims is described by an extension no glob knows.
  TempDir dir;
  const std::string binary("\x01\x02\x03\x04\x05\x06\x07\x08", 8);
  EXPECT_EQ(FileInspector().inspect(dir.write("blob.lsqz", binary))->typeDescription, "LSQZ");
  EXPECT_EQ(FileInspector().inspect(dir.write("blob", binary))->typeDescription, "");
  EXPECT_EQ(FileInspector().inspect(dir.write("blob.\u00E9tude", binary))->typeDescription,
            "\u00C9TUDE");
}

TEST(FileInspector, inspectsFoldersAndPackagesAsContainers) {
  TempDir dir;
  std::filesystem::create_directory(dir.path() / "Photos");
  std::filesystem::create_directory(dir.path() / "Tool.APP");
  const auto& folder = expectInvariants(FileInspector().inspect(dir.path() / "Photos"));
  EXPECT_EQ(folder.typeDescription, "Folder");
  EXPECT_EQ(folder.sections[0].systemImage, "folder.fill");
  EXPECT_EQ(rowValue(folder, "Container", "Size"), "<missing>");
  // The system metadata describes folders too; no fingerprint.
  EXPECT_EQ(titlesOf(folder.sections),
            (Titles{"Container", "Folder Contents", "Safe Inspection", "System Metadata"}));
  EXPECT_EQ(folder.summaryItems, (Titles{"Safe Inspection", "Folder Contents", "System Metadata"}));

  const auto package = FileInspector().inspect(dir.path() / "Tool.APP");
  ASSERT_TRUE(package);
  EXPECT_EQ(package->typeDescription, "macOS Package");
  EXPECT_EQ(rowValue(*package, "Container", "Container Type"), "macOS Package");
  EXPECT_EQ(package->sections[1].title, "Package Contents");
}

TEST(FileInspector, copesWithAwkwardAndUnreadableNames) {
  TempDir dir;
  for (const char* name : {"new\nline.txt", "--json", "caf\xE9.txt"}) {
    const auto file = dir.write(name, "content");
    const auto& result = expectInvariants(FileInspector().inspect(file));
    EXPECT_EQ(result.url, file);
    EXPECT_TRUE(hasSection(result, "Identity & Integrity")) << name;
  }
  EXPECT_EQ(FileInspector().inspect(dir.path() / "caf\xE9.txt")->displayName, "caf\uFFFD.txt");

  if (test::runningAsRoot()) GTEST_SKIP() << "root can read a file without read permission";
  const auto locked = dir.write("locked.txt", "secret");
  ASSERT_EQ(::chmod(locked.c_str(), 0), 0);
  const auto& result = expectInvariants(FileInspector().inspect(locked));
  EXPECT_EQ(rowValue(result, "Identity & Integrity", "SHA-256"), "<missing>");
  EXPECT_EQ(rowValue(result, "Identity & Integrity", "Permissions"), "000");
}

TEST(FileInspector, aDecoderCrashLimitsTheHealthVerdictAndKeepsTheRestOfTheResult) {
  TempDir dir;
  const FileInspector inspector;
  // A PNG by its name and first bytes, which a test build's decoder crashes on.
  const auto& result = expectInvariants(inspector.inspect(dir.write(
      "crash.png", "\x89PNG\r\n\x1a\n" + std::string(platform::decoder::kTestCrashMarker))));
  for (const char* title : {"File", "Identity & Integrity", "Type Verification", "File Health"}) {
    EXPECT_TRUE(hasSection(result, title)) << title;
  }
  EXPECT_EQ(rowValue(result, "File Health", "Assessment"), "Verification limited");
  EXPECT_EQ(rowValue(result, "File Health", "Image Structure"), "Decoder stopped");
  EXPECT_NE(result.rawMetadata.at("File Health Detail").find("stopped while reading this file"),
            std::string::npos);

  // The same inspector goes on, with a fresh worker.
  const auto& next = expectInvariants(inspector.inspect(kData / "health" / "intact.jpg"));
  EXPECT_EQ(rowValue(next, "File Health", "Assessment"), "Looks intact");
}

// A PNG chunk with its length and CRC, so that decoders take it for a well-formed one.
std::string pngChunk(std::string_view type, std::string_view data) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char c : std::string(type) + std::string(data)) {
    crc ^= static_cast<std::uint8_t>(c);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ (0xEDB88320 & (0 - (crc & 1)));
  }
  crc ^= 0xFFFFFFFF;
  const auto bigEndian = [](std::uint32_t value) {
    return std::string{static_cast<char>(value >> 24), static_cast<char>(value >> 16),
                       static_cast<char>(value >> 8), static_cast<char>(value)};
  };
  return bigEndian(static_cast<std::uint32_t>(data.size())) + std::string(type) +
         std::string(data) + bigEndian(crc);
}

TEST(FileInspector, anImageClaimingTenBillionPixelsStillGetsItsResult) {
  TempDir dir;
  // 100000 x 100000 RGB, 8 bits, then a few bytes of pixel data and the end.
  const std::string header("\x00\x01\x86\xA0\x00\x01\x86\xA0\x08\x02\x00\x00\x00", 13);
  const std::string png = std::string("\x89PNG\r\n\x1a\n") + pngChunk("IHDR", header) +
                          pngChunk("IDAT", std::string("\x78\x9c\x63\x00\x00", 5)) +
                          pngChunk("IEND", "");
  const auto started = std::chrono::steady_clock::now();
  const auto& result = expectInvariants(FileInspector().inspect(dir.write("huge.png", png)));
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(30));
  EXPECT_NE(rowValue(result, "File Health", "Assessment"), "Looks intact");
}

TEST(FileInspector, describesTheItemAsItWasOpenedWhateverHappensToThePath) {
  TempDir dir;
  const auto path = dir.write("invoice.pdf", "plain words, not a PDF at all\n");
  const platform::OpenedItem item = test::openedItem(path);
  // Replaced by a real PDF, then appended to, between the open and the analyzers.
  std::filesystem::copy_file(kData / "health" / "one_page.pdf", dir.path() / "real.pdf");
  std::filesystem::rename(dir.path() / "real.pdf", path);
  std::ofstream(path, std::ios::app) << "trailing bytes";

  const LumenscribeResult result = FileInspector().inspect(item);
  EXPECT_EQ(rowValue(result, "File", "Size"), "30 bytes");
  EXPECT_EQ(rowValue(result, "Type Verification", "Content Signature"), "Plain text");
  EXPECT_EQ(rowValue(result, "File Health", "PDF Structure"), "Could not open");
  EXPECT_EQ(result.rawMetadata.at("File SHA-256"),
            "79ea4cd59ec2a31ef80c9e90cb4c1326e2dd07deff48655cc592d40406b96c82");

  // An opened folder stays the folder when its path is swapped for a link.
  std::filesystem::create_directory(dir.path() / "album");
  dir.write("album/mine.txt", "x");
  std::filesystem::create_directory(dir.path() / "elsewhere");
  dir.write("elsewhere/theirs.txt", "y");
  const platform::OpenedItem folder = test::openedItem(dir.path() / "album");
  std::filesystem::rename(dir.path() / "album", dir.path() / "moved");
  std::filesystem::create_directory_symlink(dir.path() / "elsewhere", dir.path() / "album");
  struct stat status {};
  EXPECT_EQ(::fstatat(folder.descriptor(), "mine.txt", &status, AT_SYMLINK_NOFOLLOW), 0);
  EXPECT_NE(::fstatat(folder.descriptor(), "theirs.txt", &status, AT_SYMLINK_NOFOLLOW), 0);
  EXPECT_TRUE(folder.facts().isDirectory);
  EXPECT_FALSE(folder.facts().isSymbolicLink);
}

TEST(FileInspector, analysesDocumentsTextsAndMediaAfterTheHealthCheckAsTheirTypeDecides) {
  TempDir dir;
  const auto pdf = dir.path() / "Letter.PDF";
  std::filesystem::copy_file(kData / "pdf/letter_contacts.pdf", pdf);
  const FileInspector inspector;
  EXPECT_EQ(titlesAfterHealth(expectInvariants(inspector.inspect(pdf))),
            (Titles{"System Metadata", "Document", "Document Structure", "PDF Content Analysis"}));

  const auto& text =
      expectInvariants(inspector.inspect(dir.write("notes.txt", "Mail ann@example.org\n")));
  EXPECT_EQ(titlesAfterHealth(text), (Titles{"System Metadata", "Text Analysis"}));
  EXPECT_EQ(text.privacyFindings.back().title, "Email addresses are present");
  // A source file is text too; a text file named .pdf is neither a PDF nor analysed as text.
  const auto& script = expectInvariants(inspector.inspect(dir.write("tool.py", "print(1)\n")));
  EXPECT_EQ(rowValue(script, "Text Analysis", "Source Type"), "Python");
  const auto& fake = expectInvariants(inspector.inspect(dir.write("fake.pdf", "just words\n")));
  EXPECT_EQ(titlesAfterHealth(fake), Titles{"System Metadata"});

  const std::pair<const char*, Titles> media[] = {
      {"tagged.mp3", {"System Metadata", "Audio", "Audio Tags"}},
      {"portrait.mp4", {"System Metadata", "Video"}},
      // Matroska audio is filed under video too: one probe serves both analyses.
      {"latin1_tags.mka", {"System Metadata", "Audio", "Audio Tags", "Video"}},
      {"text_named.mp4", {"System Metadata", "Video"}},
  };
  for (const auto& [file, sections] : media) {
    SCOPED_TRACE(file);
    EXPECT_EQ(titlesAfterHealth(expectInvariants(inspector.inspect(kData / "media" / file))),
              sections);
  }
}

TEST(FileInspector, endsWithTheImageSectionsAndTheirFindingsInTheirOrder) {
  const FileInspector inspector;
  // The property map is read beside the health check; the order must not depend on which
  // of the two ends first.
  for (int round = 0; round < 3; ++round) {
    const auto& photo =
        expectInvariants(inspector.inspect(kData / "image" / "camera_gps_south_west.jpg"));
    EXPECT_EQ(titlesOf(photo.sections),
              (Titles{"File", "Identity & Integrity", "Type Verification", "File Health",
                      "System Metadata", "Image", "Camera", "Location", "Software & Creator"}));
    EXPECT_EQ(titlesOf(photo.privacyFindings),
              (Titles{"Location data is embedded", "Creation history is visible",
                      "Camera details are visible"}));
    EXPECT_EQ(rowValue(photo, "Location", "Latitude"), "-22.951916°");
  }
}

TEST(FileInspector, leavesTheInspectedItemsAndTheirFoldersUntouched) {
  TempDir dir;
  const auto file = dir.write("photo.jpg", std::string(3 * 1024 * 1024, 'x'));
  std::filesystem::create_directories(dir.path() / "inner" / "deeper");
  dir.write("inner/deeper/file.txt", "f");
  // Access times well in the past, so that any read through a normal open would move them.
  const timespec past[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
  const std::filesystem::path items[] = {file, dir.path() / "inner",
                                         dir.path() / "inner" / "deeper"};
  for (const auto& item : items) ASSERT_EQ(::utimensat(AT_FDCWD, item.c_str(), past, 0), 0);
  struct stat before {};
  ASSERT_EQ(::stat(file.c_str(), &before), 0);
  ASSERT_TRUE(FileInspector().inspect(file));
  ASSERT_TRUE(FileInspector().inspect(dir.path()));
  struct stat after {};
  ASSERT_EQ(::stat(file.c_str(), &after), 0);
  EXPECT_EQ(after.st_size, before.st_size);
  EXPECT_EQ(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
  EXPECT_EQ(after.st_ctim.tv_sec, before.st_ctim.tv_sec);
  for (const auto& item : items) {
    ASSERT_EQ(::stat(item.c_str(), &after), 0);
    EXPECT_EQ(after.st_atim.tv_sec, 1'000'000'000) << item;
  }
}

}  // namespace
}  // namespace lumenscribe
