// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The decoder's whole-file checks, run in this process as the worker runs them.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

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

const std::filesystem::path kFixtures =
    std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "type_health";

Clock::time_point inAMinute() { return Clock::now() + std::chrono::minutes(1); }

TEST(CompressedStream, decompressesEveryMemberAndVerifiesEveryChecksum) {
  struct Case {
    const char* file;
    CompressedFormat format;
    StreamTestOutcome outcome;
    bool trailing;
  };
  const Case cases[] = {
      {"intact.gz", CompressedFormat::gzip, StreamTestOutcome::intact, false},
      {"two_members.gz", CompressedFormat::gzip, StreamTestOutcome::intact, false},
      {"trailing_zeros.gz", CompressedFormat::gzip, StreamTestOutcome::intact, true},
      {"truncated.gz", CompressedFormat::gzip, StreamTestOutcome::truncated, false},
      {"bad_checksum.gz", CompressedFormat::gzip, StreamTestOutcome::corrupt, false},
      {"intact.xz", CompressedFormat::xz, StreamTestOutcome::intact, false},
      {"truncated.xz", CompressedFormat::xz, StreamTestOutcome::truncated, false},
      {"intact.bz2", CompressedFormat::bzip2, StreamTestOutcome::intact, false},
      {"corrupt.bz2", CompressedFormat::bzip2, StreamTestOutcome::corrupt, false},
      {"intact.zst", CompressedFormat::zstd, StreamTestOutcome::intact, false},
      {"truncated.zst", CompressedFormat::zstd, StreamTestOutcome::truncated, false},
      // The wrong format for the bytes is no stream at all.
      {"intact.gz", CompressedFormat::xz, StreamTestOutcome::corrupt, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    const StreamTestFacts facts =
        testCompressedStream(OpenFixture(kFixtures / c.file).bytes(), c.format, inAMinute());
    EXPECT_EQ(facts.outcome, c.outcome);
    EXPECT_EQ(facts.trailingData, c.trailing);
  }
  // seq 1 4000 is 18893 bytes.
  EXPECT_EQ(testCompressedStream(OpenFixture(kFixtures / "intact.zst").bytes(),
                                 CompressedFormat::zstd, inAMinute())
                .expandedBytes,
            18893);
}

TEST(CompressedStream, stopsAtItsDeadlineAndRefusesWhatItCannotRead) {
  EXPECT_EQ(testCompressedStream(OpenFixture(kFixtures / "intact.xz").bytes(), CompressedFormat::xz,
                                 Clock::now())
                .outcome,
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

TEST(PdfStructure, countsTheReadersErrorsAndTheCheckersErrorsAndWarnings) {
  const PdfStructureFacts intact =
      checkPdfStructure(OpenFixture(kHealthFixtures / "three_pages.pdf").bytes(), inAMinute());
  EXPECT_EQ(intact, (PdfStructureFacts{{true, false, false, 3}, 0, 0, 0, true}));

  const PdfStructureFacts rebuilt =
      checkPdfStructure(OpenFixture(kFixtures / "no_xref_table.pdf").bytes(), inAMinute());
  EXPECT_EQ(rebuilt.open.pageCount, 1);
  EXPECT_EQ(rebuilt.checkerErrors, 0);
  EXPECT_EQ(rebuilt.checkerWarnings, 3);  // as qpdf --check reports them
  EXPECT_TRUE(rebuilt.complete);

  // Only poppler calls a header without its dash an error.
  const PdfStructureFacts dashless =
      checkPdfStructure(OpenFixture(kFixtures / "header_without_dash.pdf").bytes(), inAMinute());
  EXPECT_EQ(dashless.readerErrors, 1);
  EXPECT_EQ(dashless.checkerErrors, 0);
  EXPECT_GT(dashless.checkerWarnings, 0);

  const PdfStructureFacts loop =
      checkPdfStructure(OpenFixture(kFixtures / "page_tree_loop.pdf").bytes(), inAMinute());
  EXPECT_GT(loop.readerErrors + loop.checkerErrors, 0);

  // A locked document is answered from its lock, and nothing else is tried.
  EXPECT_EQ(checkPdfStructure(OpenFixture(kHealthFixtures / "encrypted_user_password.pdf").bytes(),
                              inAMinute()),
            (PdfStructureFacts{{true, true, true, 0}, 0, 0, 0, true}));
  // An owner password alone opens: the check reads through the encryption.
  EXPECT_EQ(
      checkPdfStructure(OpenFixture(kHealthFixtures / "encrypted_owner_password_only.pdf").bytes(),
                        inAMinute()),
      (PdfStructureFacts{{true, true, false, 1}, 0, 0, 0, true}));
  EXPECT_EQ(checkPdfStructure(OpenFixture(kHealthFixtures / "not_a_pdf.pdf").bytes(), inAMinute()),
            (PdfStructureFacts{{}, 0, 0, 0, true}));
  EXPECT_FALSE(
      checkPdfStructure(OpenFixture(kHealthFixtures / "three_pages.pdf").bytes(), Clock::now())
          .complete);
}

TEST(MediaDemux, readsEveryPacketAndCountsReadAndChecksumErrors) {
  const auto demux = [](const char* file) {
    return demuxEveryPacket(OpenFixture(kFixtures / file).bytes(), inAMinute());
  };
  EXPECT_EQ(demux("tone.ogg"), (MediaPacketFacts{true, 1, 88, 0, 0, true}));
  EXPECT_EQ(demux("tone.flac"), (MediaPacketFacts{true, 1, 10, 0, 0, true}));
  EXPECT_EQ(demux("clip.mp4"), (MediaPacketFacts{true, 1, 10, 0, 0, true}));
  EXPECT_EQ(demux("metrics.afm"), MediaPacketFacts{});

  // Where the damage lands decides how many packets it costs; that it is seen does not.
  const MediaPacketFacts checksum = demux("bad_page_checksum.ogg");
  EXPECT_GT(checksum.checksumErrors, 0);
  EXPECT_LT(checksum.packets, 88);
  const MediaPacketFacts cut = demux("truncated.mp4");
  EXPECT_GT(cut.readErrors, 0);
  EXPECT_LT(cut.packets, 10);
  EXPECT_EQ(cut.checksumErrors, 0);

  const MediaPacketFacts late =
      demuxEveryPacket(OpenFixture(kFixtures / "tone.ogg").bytes(), Clock::now());
  EXPECT_TRUE(late.opened);
  EXPECT_FALSE(late.complete);
  EXPECT_EQ(demuxEveryPacket(ItemBytes{-1, 100}, inAMinute()), MediaPacketFacts{});
}

TEST(MediaDemux, readsOnlyTheItemNeverAFileItNames) {
  // An HLS playlist names a segment beside it; the demuxer may not open it.
  lumenscribe::test::TempDir dir;
  std::ifstream in(kFixtures / "tone.ogg", std::ios::binary);
  dir.write("segment.ogg", std::string(std::istreambuf_iterator<char>(in), {}));
  const auto playlist =
      dir.write("list.m3u8", "#EXTM3U\n#EXT-X-TARGETDURATION:10\n#EXTINF:2,\n" +
                                 (dir.path() / "segment.ogg").string() + "\n#EXT-X-ENDLIST\n");
  EXPECT_EQ(demuxEveryPacket(OpenFixture(playlist).bytes(), inAMinute()).packets, 0);
}

}  // namespace
}  // namespace lumenscribe::decoder
