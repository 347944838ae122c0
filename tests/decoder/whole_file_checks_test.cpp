// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The decoder's whole-file checks, run in this process as the worker runs them.
#include <gtest/gtest.h>

#include "decoder/compressed_stream.h"
#include "decoder/media_demux.h"
#include "decoder/pdf_structure.h"
#include "decoder_test_support.h"
#include "test_files.h"

namespace lumenscribe::decoder {
namespace {

using platform::decoder::StreamTestOutcome;
using test::kHealthFixtures;
using test::OpenFixture;
using Clock = std::chrono::steady_clock;

const std::filesystem::path kFixtures = lumenscribe::test::kData / "type_health";

Clock::time_point inAMinute() { return Clock::now() + std::chrono::minutes(1); }

// Each fixture's outcome is checked through the health check (tests/health); these are the
// edges it does not reach.
TEST(CompressedStream, stopsAtItsDeadlineAndRefusesWhatItCannotRead) {
  const auto test = [](const char* file, CompressedFormat format, Clock::time_point deadline) {
    return testCompressedStream(OpenFixture(kFixtures / file).bytes(), format, deadline);
  };
  // seq 1 4000 is 18893 bytes.
  EXPECT_EQ(test("intact.zst", CompressedFormat::zstd, inAMinute()).expandedBytes, 18893);
  EXPECT_EQ(test("intact.gz", CompressedFormat::xz, inAMinute()).outcome,
            StreamTestOutcome::corrupt);  // the wrong format for the bytes is no stream
  EXPECT_EQ(test("intact.xz", CompressedFormat::xz, Clock::now()).outcome,
            StreamTestOutcome::outOfTime);
  EXPECT_EQ(testCompressedStream(ItemBytes{-1, 100}, CompressedFormat::gzip, inAMinute()).outcome,
            StreamTestOutcome::unsupported);
  EXPECT_EQ(testCompressedStream(ItemBytes{-1, 100}, static_cast<CompressedFormat>(9), inAMinute())
                .outcome,
            StreamTestOutcome::unsupported);
}

TEST(CompressedStream, anXzStreamThatAsksForTooLargeAWindowIsNotDecoded) {
  // xz -9e --lzma2=dict=1GiB writes a header asking for a 1 GiB dictionary; the header
  // alone is enough, so the stream is made from a tiny input.
  lumenscribe::test::TempDir dir;
  const auto source = dir.write("small.txt", "tiny\n");
  const std::string command = "xz -q -c --lzma2=preset=6,dict=1GiB " + source.string() + " > " +
                              (dir.path() / "huge-window.xz").string() + " 2>/dev/null";
  if (std::system(command.c_str()) != 0) GTEST_SKIP() << "xz cannot write the stream here";
  EXPECT_EQ(testCompressedStream(OpenFixture(dir.path() / "huge-window.xz").bytes(),
                                 CompressedFormat::xz, inAMinute())
                .outcome,
            StreamTestOutcome::tooMuchMemory);
}

TEST(WholeFileChecks, stopAtTheirDeadlineAndReadNothingWithoutADescriptor) {
  EXPECT_EQ(
      checkPdfStructure(OpenFixture(kHealthFixtures / "three_pages.pdf").bytes(), inAMinute()),
      (PdfStructureFacts{{true, false, false, 3}, 0, 0, 0, true}));
  EXPECT_FALSE(
      checkPdfStructure(OpenFixture(kHealthFixtures / "three_pages.pdf").bytes(), Clock::now())
          .complete);
  EXPECT_EQ(checkPdfStructure(ItemBytes{-1, 100}, inAMinute()), PdfStructureFacts{});

  const MediaPacketFacts late =
      demuxEveryPacket(OpenFixture(kFixtures / "tone.ogg").bytes(), Clock::now());
  EXPECT_TRUE(late.opened);
  EXPECT_FALSE(late.complete);
  EXPECT_EQ(demuxEveryPacket(ItemBytes{-1, 100}, inAMinute()), MediaPacketFacts{});
  EXPECT_EQ(demuxEveryPacket(OpenFixture(kFixtures / "metrics.afm").bytes(), inAMinute()),
            MediaPacketFacts{});
}

TEST(MediaDemux, readsOnlyTheItemNeverAFileItNames) {
  // An HLS playlist names a segment beside it; the demuxer may not open it.
  lumenscribe::test::TempDir dir;
  dir.write("segment.ogg", lumenscribe::test::fileBytes(kFixtures / "tone.ogg"));
  const auto playlist =
      dir.write("list.m3u8", "#EXTM3U\n#EXT-X-TARGETDURATION:10\n#EXTINF:2,\n" +
                                 (dir.path() / "segment.ogg").string() + "\n#EXT-X-ENDLIST\n");
  EXPECT_EQ(demuxEveryPacket(OpenFixture(playlist).bytes(), inAMinute()).packets, 0);
}

}  // namespace
}  // namespace lumenscribe::decoder
