// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// Reads that return fewer bytes than asked: pipes do it, and so do FUSE and network file
// systems. Every reader must still get the whole content.
#include "platform/file_descriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <iterator>
#include <thread>

#include "identity/identity_integrity.h"
#include "test_files.h"

namespace {

// While not zero, every pread of this program returns at most this many bytes, as a FUSE
// file system may. Defining pread here puts it before the C library's for the whole program.
std::atomic<std::size_t> gLargestPread{0};

}  // namespace

extern "C" ssize_t pread(int fd, void* buffer, std::size_t count, off_t offset) {
  const std::size_t largest = gLargestPread.load();
  if (largest != 0 && count > largest) count = largest;
  return ::syscall(SYS_pread64, fd, buffer, count, offset);
}

namespace lumenscribe::platform {
namespace {

using test::TempDir;

class ShortPreads {
 public:
  explicit ShortPreads(std::size_t largest) { gLargestPread = largest; }
  ~ShortPreads() { gLargestPread = 0; }
  ShortPreads(const ShortPreads&) = delete;
  ShortPreads& operator=(const ShortPreads&) = delete;
};

// Bytes that differ from their neighbours, so that a piece read at the wrong offset shows.
std::string patterned(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>((i * 7 + i / 251) % 256);
  return bytes;
}

std::string asString(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST(ReadFully, fillsTheBufferFromAPipeFedInSmallPieces) {
  const std::string content = patterned(3000);
  struct Case {
    std::size_t buffer;
    std::vector<std::size_t> counts;  // what each readFully returns, in turn
  };
  for (const Case& c : {Case{3000, {3000, 0}}, Case{4096, {3000, 0}},
                        Case{1000, {1000, 1000, 1000, 0}}, Case{1999, {1999, 1001, 0}}}) {
    SCOPED_TRACE(c.buffer);
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    UniqueFd readEnd(ends[0]);
    std::thread writer([writeEnd = UniqueFd(ends[1]), &content] {
      for (std::size_t done = 0; done < content.size(); done += 7) {
        const std::size_t piece = std::min<std::size_t>(7, content.size() - done);
        if (::write(writeEnd.get(), content.data() + done, piece) != static_cast<ssize_t>(piece)) {
          return;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(100));
      }
    });
    std::string received;
    std::vector<std::size_t> counts;
    std::vector<std::byte> buffer(c.buffer);
    for (std::size_t call = 0; call < c.counts.size(); ++call) {
      const auto count = readFully(readEnd.get(), buffer);
      ASSERT_TRUE(count);
      counts.push_back(*count);
      received += asString(std::span(buffer).first(*count));
    }
    writer.join();
    EXPECT_EQ(counts, c.counts);
    EXPECT_TRUE(received == content);
  }
}

TEST(ReadFullyAt, readsEveryPieceAtItsOwnOffsetWhenReadsComeBackShort) {
  TempDir dir;
  const std::string content = patterned(3000);
  const UniqueFd fd = openForReading(dir.write("data", content));
  ASSERT_TRUE(fd);
  const ShortPreads shortPreads(7);
  struct Case {
    std::int64_t offset;
    std::size_t buffer;
    std::optional<std::size_t> count;  // short only where the file ends
  };
  for (const Case& c :
       {Case{0, 3000, 3000}, Case{500, 1000, 1000}, Case{2500, 1000, 500}, Case{2999, 8, 1},
        Case{3000, 8, 0}, Case{9000, 8, 0}, Case{-1, 8, std::nullopt}}) {
    SCOPED_TRACE(c.offset);
    std::vector<std::byte> buffer(c.buffer);
    const auto count = readFullyAt(fd.get(), buffer, c.offset);
    ASSERT_EQ(count, c.count);
    if (!count || *count == 0) continue;
    EXPECT_TRUE(asString(std::span(buffer).first(*count)) ==
                content.substr(static_cast<std::size_t>(c.offset), *count));
  }
  // Reading never moves the file position.
  EXPECT_EQ(::lseek(fd.get(), 0, SEEK_CUR), 0);
  std::byte byte[1];
  EXPECT_EQ(readFullyAt(-1, byte, 0), std::nullopt);
}

TEST(ReadFullyAt, shortReadsStillGiveTheWholeFingerprintAndHead) {
  TempDir dir;
  const auto file = dir.write("big.bin", patterned(1024 * 1024 + 4099));
  // Without an extension only the content tells what the picture is.
  const auto picture = dir.path() / "picture";
  std::filesystem::copy_file(
      std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health" / "intact.png", picture);
  const auto expected = fileFingerprint(file);
  const OpenedItem whole = test::openedItem(picture);
  ASSERT_TRUE(expected && whole.contentType());
  ASSERT_EQ(whole.contentType()->identifier(), "image/png");

  {
    const ShortPreads shortPreads(4093);
    EXPECT_EQ(fileFingerprint(file), expected);
  }
  const ShortPreads shortPreads(5);
  const OpenedItem item = test::openedItem(picture);
  EXPECT_TRUE(std::ranges::equal(item.head(), whole.head()));
  ASSERT_TRUE(item.contentType());
  EXPECT_EQ(item.contentType()->identifier(), "image/png");
}

}  // namespace
}  // namespace lumenscribe::platform
