// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "lumenscribe/file_inspector.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
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
  return "<missing>";
}

void expectInvariants(const LumenscribeResult& result) {
  ASSERT_FALSE(result.sections.empty());
  EXPECT_TRUE(result.sections[0].title == "File" || result.sections[0].title == "Container");
  std::int64_t rows = 0;
  for (const auto& section : result.sections)
    rows += static_cast<std::int64_t>(section.rows.size());
  EXPECT_EQ(result.summaryCount, rows);
  EXPECT_FALSE(result.summaryItems.empty());
  EXPECT_FALSE(result.privacyFindings.empty());
  auto items = result.summaryItems;
  std::sort(items.begin(), items.end());
  EXPECT_EQ(std::adjacent_find(items.begin(), items.end()), items.end());
}

TEST(FileInspector, refusesSpecialFilesWithoutOpeningThem) {
  TempDir dir;
  const auto fifo = dir.path() / "pipe";
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  // A socket path is limited to ~108 bytes, so it goes in a short directory of its own.
  char socketDir[] = "/tmp/lsXXXXXX";
  ASSERT_NE(::mkdtemp(socketDir), nullptr);
  const std::string socketPath = std::string(socketDir) + "/s";
  const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  socketPath.copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);

  // Opening a FIFO with no writer would block this test forever; refusing it must not.
  for (const std::filesystem::path& special :
       {fifo, std::filesystem::path(socketPath), std::filesystem::path("/dev/null")}) {
    const auto result = FileInspector().inspect(special);
    ASSERT_FALSE(result) << special;
    EXPECT_EQ(result.error(), make_error_code(FileInspectionError::unsupportedFile));
    EXPECT_EQ(result.error().message(), "Lumenscribe could not inspect this file yet.");
  }
  ::close(fd);
  ::unlink(socketPath.c_str());
  ::rmdir(socketDir);
}

TEST(FileInspector, failsWithTheSystemsMessageForMissingItems) {
  TempDir dir;
  const auto dangling = dir.path() / "dangling";
  std::filesystem::create_symlink(dir.path() / "nowhere", dangling);
  for (const auto& missing : {dangling, dir.path() / "absent"}) {
    const auto result = FileInspector().inspect(missing);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(result.error().message(), "No such file or directory");
  }
}

TEST(FileInspector, inspectsARegularFileWithIdentityAndDefaults) {
  TempDir dir;
  const auto file = dir.write("notes.txt", "hello\n");
  const auto result = FileInspector().inspect(file);
  ASSERT_TRUE(result) << result.error().message();
  expectInvariants(*result);
  EXPECT_EQ(result->displayName, "notes.txt");
  EXPECT_EQ(result->url, file);
  EXPECT_EQ(result->typeDescription, "plain text document");  // the MIME database's comment
  EXPECT_EQ(result->sections[0].title, "File");
  EXPECT_EQ(result->sections[0].systemImage, "doc.fill");
  EXPECT_EQ(rowValue(result->sections[0], "Size"), "6 bytes");
  const auto* identity = sectionTitled(*result, "Identity & Integrity");
  ASSERT_NE(identity, nullptr);
  EXPECT_EQ(rowValue(*identity, "Filesystem Type"), "Regular file");
  EXPECT_EQ(result->privacyFindings.back().title, "No obvious high-interest metadata found");
}

TEST(FileInspector, startsNoDecoderForWhatNeedsNone) {
  TempDir dir;
  const FileInspector inspector;
  ASSERT_TRUE(inspector.inspect(dir.write("notes.txt", "hello\n")));
  ASSERT_TRUE(inspector.inspect(dir.path()));
  EXPECT_TRUE(inspector.decoder()->workerPids().empty());
  ASSERT_TRUE(inspector.inspect(std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health" /
                                "intact.jpg"));
  EXPECT_FALSE(inspector.decoder()->workerPids().empty());
}

TEST(FileInspector, namesWhatTheContentProvesWhenItContradictsTheName) {
  const std::filesystem::path fixtures =
      std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "type_health";
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
    const auto result = FileInspector().inspect(fixtures / c.file);
    ASSERT_TRUE(result);
    expectInvariants(*result);
    EXPECT_EQ(result->typeDescription, c.heading);
    // The sections still come in step order, the fingerprint's before the check's (the image
    // pass may follow).
    std::vector<std::string> titles;
    for (const auto& section : result->sections) titles.push_back(section.title);
    titles.resize(std::min<std::size_t>(titles.size(), 4));
    EXPECT_EQ(titles, (std::vector<std::string>{"File", "Identity & Integrity", "Type Verification",
                                                "File Health"}));
  }
}

TEST(FileInspector, inspectsFoldersAndPackagesAsContainers) {
  TempDir dir;
  std::filesystem::create_directory(dir.path() / "Photos");
  std::filesystem::create_directory(dir.path() / "Tool.APP");
  const auto folder = FileInspector().inspect(dir.path() / "Photos");
  ASSERT_TRUE(folder);
  expectInvariants(*folder);
  EXPECT_EQ(folder->typeDescription, "Folder");
  EXPECT_EQ(folder->sections[0].title, "Container");
  EXPECT_EQ(folder->sections[0].systemImage, "folder.fill");
  EXPECT_EQ(sectionTitled(*folder, "Identity & Integrity"), nullptr);
  EXPECT_EQ(rowValue(folder->sections[0], "Size"), "<missing>");
  EXPECT_EQ(folder->sections[1].title, "Folder Contents");
  // The system metadata describes folders too.
  EXPECT_EQ(folder->sections.back().title, "System Metadata");
  EXPECT_EQ(folder->summaryItems,
            (std::vector<std::string>{"Safe Inspection", "Folder Contents", "System Metadata"}));

  const auto package = FileInspector().inspect(dir.path() / "Tool.APP");
  ASSERT_TRUE(package);
  EXPECT_EQ(package->typeDescription, "macOS Package");
  EXPECT_EQ(rowValue(package->sections[0], "Container Type"), "macOS Package");
  EXPECT_EQ(package->sections[1].title, "Package Contents");
}

TEST(FileInspector, describesUntypedFilesByTheirExtension) {
  TempDir dir;
  // Content that no sniffing rule claims and an extension no glob knows.
  const std::string binary("\x01\x02\x03\x04\x05\x06\x07\x08", 8);
  EXPECT_EQ(FileInspector().inspect(dir.write("blob.lsqz", binary))->typeDescription, "LSQZ");
  EXPECT_EQ(FileInspector().inspect(dir.write("blob", binary))->typeDescription, "");
  EXPECT_EQ(FileInspector().inspect(dir.write("blob.\u00E9tude", binary))->typeDescription,
            "\u00C9TUDE");
}

TEST(FileInspector, copesWithAwkwardNames) {
  TempDir dir;
  for (const std::string& name :
       std::vector<std::string>{"with space.txt", "new\nline.txt", "-x", "--json", "caf\xE9.txt"}) {
    const auto file = dir.write(name, "content");
    const auto result = FileInspector().inspect(file);
    ASSERT_TRUE(result) << name;
    expectInvariants(*result);
    EXPECT_EQ(result->url, file);
    EXPECT_NE(sectionTitled(*result, "Identity & Integrity"), nullptr) << name;
  }
  const auto latin1 = FileInspector().inspect(dir.path() / "caf\xE9.txt");
  EXPECT_EQ(latin1->displayName, "caf\uFFFD.txt");
}

TEST(FileInspector, reportsAnUnreadableFileWithoutItsFingerprint) {
  if (test::runningAsRoot()) GTEST_SKIP() << "root can read a file without read permission";
  TempDir dir;
  const auto file = dir.write("locked.txt", "secret");
  ASSERT_EQ(::chmod(file.c_str(), 0), 0);
  const auto result = FileInspector().inspect(file);
  ASSERT_TRUE(result);
  const auto* identity = sectionTitled(*result, "Identity & Integrity");
  ASSERT_NE(identity, nullptr);
  EXPECT_EQ(rowValue(*identity, "SHA-256"), "<missing>");
  EXPECT_EQ(rowValue(*identity, "Permissions"), "000");
}

// A PNG by its name and first bytes, which a test build's decoder crashes on.
std::string crashingPng() {
  return std::string("\x89PNG\r\n\x1a\n") + std::string(platform::decoder::kTestCrashMarker);
}

TEST(FileInspector, aDecoderCrashLimitsTheHealthVerdictAndKeepsTheRestOfTheResult) {
  TempDir dir;
  const FileInspector inspector;
  const auto result = inspector.inspect(dir.write("crash.png", crashingPng()));
  ASSERT_TRUE(result);
  expectInvariants(*result);
  for (const char* title : {"File", "Identity & Integrity", "Type Verification", "File Health"}) {
    EXPECT_NE(sectionTitled(*result, title), nullptr) << title;
  }
  const auto* health = sectionTitled(*result, "File Health");
  ASSERT_NE(health, nullptr);
  EXPECT_EQ(rowValue(*health, "Assessment"), "Verification limited");
  EXPECT_EQ(rowValue(*health, "Image Structure"), "Decoder stopped");
  EXPECT_NE(result->rawMetadata.at("File Health Detail").find("stopped while reading this file"),
            std::string::npos);

  // The same inspector goes on, with a fresh worker.
  const auto next =
      inspector.inspect(std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health" / "intact.jpg");
  ASSERT_TRUE(next);
  EXPECT_EQ(rowValue(*sectionTitled(*next, "File Health"), "Assessment"), "Looks intact");
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
  const auto result = FileInspector().inspect(dir.write("huge.png", png));
  ASSERT_TRUE(result);
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(30));
  const auto* health = sectionTitled(*result, "File Health");
  ASSERT_NE(health, nullptr);
  EXPECT_NE(rowValue(*health, "Assessment"), "Looks intact");
}

TEST(FileInspector, describesTheItemAsItWasOpenedWhateverHappensToThePath) {
  TempDir dir;
  const auto path = dir.write("invoice.pdf", "plain words, not a PDF at all\n");
  const platform::OpenedItem item = test::openedItem(path);
  // Replaced by a real PDF, then appended to, between the open and the analyzers.
  std::filesystem::copy_file(
      std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health" / "one_page.pdf",
      dir.path() / "real.pdf");
  std::filesystem::rename(dir.path() / "real.pdf", path);
  std::ofstream(path, std::ios::app) << "trailing bytes";

  const LumenscribeResult result = FileInspector().inspect(item);
  EXPECT_EQ(rowValue(result.sections[0], "Size"), "30 bytes");
  EXPECT_EQ(rowValue(*sectionTitled(result, "Type Verification"), "Content Signature"),
            "Plain text");
  EXPECT_EQ(rowValue(*sectionTitled(result, "File Health"), "PDF Structure"), "Could not open");
  EXPECT_EQ(result.rawMetadata.at("File SHA-256"),
            "79ea4cd59ec2a31ef80c9e90cb4c1326e2dd07deff48655cc592d40406b96c82");
}

TEST(FileInspector, anOpenedFolderStaysTheFolderWhenItsPathIsSwappedForALink) {
  TempDir dir;
  std::filesystem::create_directory(dir.path() / "album");
  dir.write("album/mine.txt", "x");
  std::filesystem::create_directory(dir.path() / "elsewhere");
  dir.write("elsewhere/theirs.txt", "y");
  const platform::OpenedItem item = test::openedItem(dir.path() / "album");
  std::filesystem::rename(dir.path() / "album", dir.path() / "moved");
  std::filesystem::create_directory_symlink(dir.path() / "elsewhere", dir.path() / "album");

  struct stat status {};
  EXPECT_EQ(::fstatat(item.descriptor(), "mine.txt", &status, AT_SYMLINK_NOFOLLOW), 0);
  EXPECT_NE(::fstatat(item.descriptor(), "theirs.txt", &status, AT_SYMLINK_NOFOLLOW), 0);
  EXPECT_TRUE(item.facts().isDirectory);
  EXPECT_FALSE(item.facts().isSymbolicLink);
}

std::vector<std::string> titlesOf(const LumenscribeResult& result) {
  std::vector<std::string> titles;
  for (const auto& section : result.sections) titles.push_back(section.title);
  return titles;
}

TEST(FileInspector, analysesPdfsAndTextsAfterTheHealthCheckAsTheirTypeDecides) {
  TempDir dir;
  const std::filesystem::path data = LUMENSCRIBE_TEST_DATA_DIR;
  const auto pdf = dir.path() / "Letter.PDF";
  std::filesystem::copy_file(data / "pdf/letter_contacts.pdf", pdf);
  const auto letter = FileInspector().inspect(pdf);
  ASSERT_TRUE(letter);
  expectInvariants(*letter);
  const auto titles = titlesOf(*letter);
  const auto health = std::find(titles.begin(), titles.end(), "File Health");
  ASSERT_NE(health, titles.end());
  EXPECT_EQ(std::vector<std::string>(health + 1, titles.end()),
            (std::vector<std::string>{"System Metadata", "Document", "Document Structure",
                                      "PDF Content Analysis"}));

  const auto text = FileInspector().inspect(dir.write("notes.txt", "Mail ann@example.org\n"));
  ASSERT_TRUE(text);
  expectInvariants(*text);
  EXPECT_EQ(titlesOf(*text).back(), "Text Analysis");
  EXPECT_EQ(text->privacyFindings.back().title, "Email addresses are present");
  EXPECT_EQ(sectionTitled(*text, "Document"), nullptr);

  // A source file is text too; a text file named .pdf is neither a PDF nor analysed as text.
  const auto script = FileInspector().inspect(dir.write("tool.py", "print(1)\n"));
  ASSERT_NE(sectionTitled(*script, "Text Analysis"), nullptr);
  EXPECT_EQ(rowValue(*sectionTitled(*script, "Text Analysis"), "Source Type"), "Python");
  const auto fake = FileInspector().inspect(dir.write("fake.pdf", "just words\n"));
  ASSERT_TRUE(fake);
  EXPECT_EQ(sectionTitled(*fake, "Document"), nullptr);
  EXPECT_EQ(sectionTitled(*fake, "Text Analysis"), nullptr);
}

TEST(FileInspector, analysesAudioAndVideoAfterTheSystemMetadataAsTheirTypeDecides) {
  const std::filesystem::path media = std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "media";
  const FileInspector inspector;
  const struct {
    const char* file;
    std::vector<std::string> sections;
  } cases[] = {
      {"tagged.mp3", {"System Metadata", "Audio", "Audio Tags"}},
      {"portrait.mp4", {"System Metadata", "Video"}},
      // Matroska audio is filed under video too: one probe serves both analyses.
      {"latin1_tags.mka", {"System Metadata", "Audio", "Audio Tags", "Video"}},
      {"text_named.mp4", {"System Metadata", "Video"}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.file);
    const auto result = inspector.inspect(media / test.file);
    ASSERT_TRUE(result);
    expectInvariants(*result);
    const auto titles = titlesOf(*result);
    const auto health = std::find(titles.begin(), titles.end(), "File Health");
    ASSERT_NE(health, titles.end());
    EXPECT_EQ(std::vector<std::string>(health + 1, titles.end()), test.sections);
  }
}

TEST(FileInspector, leavesTheInspectedFileUntouched) {
  TempDir dir;
  const auto file = dir.write("photo.jpg", std::string(3 * 1024 * 1024, 'x'));
  // An access time well in the past, so that any read through a normal open would move it.
  const timespec times[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
  struct stat before {};
  ASSERT_EQ(::stat(file.c_str(), &before), 0);
  ASSERT_TRUE(FileInspector().inspect(file));
  struct stat after {};
  ASSERT_EQ(::stat(file.c_str(), &after), 0);
  EXPECT_EQ(after.st_size, before.st_size);
  EXPECT_EQ(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
  EXPECT_EQ(after.st_ctim.tv_sec, before.st_ctim.tv_sec);
  EXPECT_EQ(after.st_atim.tv_sec, before.st_atim.tv_sec);
}

TEST(FileInspector, endsWithTheImageSectionsAndTheirFindingsInTheirOrder) {
  const std::filesystem::path images = std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "image";
  const FileInspector inspector;
  // The property map is read beside the health check; the order must not depend on which
  // of the two ends first.
  for (int round = 0; round < 3; ++round) {
    const auto photo = inspector.inspect(images / "camera_gps_south_west.jpg");
    ASSERT_TRUE(photo);
    expectInvariants(*photo);
    std::vector<std::string> titles;
    for (const auto& section : photo->sections) titles.push_back(section.title);
    EXPECT_EQ(titles, (std::vector<std::string>{"File", "Identity & Integrity", "Type Verification",
                                                "File Health", "System Metadata", "Image", "Camera",
                                                "Location", "Software & Creator"}));
    std::vector<std::string> findings;
    for (const auto& finding : photo->privacyFindings) findings.push_back(finding.title);
    EXPECT_EQ(findings,
              (std::vector<std::string>{"Location data is embedded", "Creation history is visible",
                                        "Camera details are visible"}));
    EXPECT_EQ(rowValue(*sectionTitled(*photo, "Location"), "Latitude"), "-22.951916°");
    EXPECT_EQ(photo->rawMetadata.at("{GPS}.LatitudeRef"), "S");
  }
  // The pass goes by content: a PNG named .jpg is analysed as the PNG it is.
  const auto renamed = inspector.inspect(images / "png_named.jpg");
  ASSERT_TRUE(renamed);
  EXPECT_EQ(rowValue(*sectionTitled(*renamed, "Camera"), "Camera"), "FX-PNG");
  // A text file has no picture to read.
  TempDir dir;
  const auto notes = inspector.inspect(dir.write("notes.jpg", "words\n"));
  ASSERT_TRUE(notes);
  EXPECT_EQ(sectionTitled(*notes, "Image"), nullptr);
}

}  // namespace
}  // namespace lumenscribe
