// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The records of the worker's replies: what a worker writes reads back, and nothing else does.
#include "platform/decoder_protocol.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <functional>
#include <limits>

namespace lumenscribe::platform::decoder {
namespace {

template <class Record, class Read>
std::optional<Record> roundTrip(const Record& record, Read read) {
  Writer out;
  write(out, record);
  Reader in(out.data());
  auto value = read(in);
  if (!in.finished()) return std::nullopt;
  return value;
}

// The bytes of `record` with the byte at `index` replaced.
template <class Record>
std::vector<std::byte> tampered(const Record& record, std::size_t index, std::uint8_t byte) {
  Writer out;
  write(out, record);
  std::vector<std::byte> bytes = out.data();
  bytes.at(index) = std::byte{byte};
  return bytes;
}

TEST(DecoderProtocol, wholeFileCheckRecordsReadBackAsWritten) {
  const PdfStructureFacts pdf{{true, true, false, 12}, 3, 1, 40, true};
  EXPECT_EQ(roundTrip(pdf, readPdfStructureFacts), pdf);
  const StreamTestFacts stream{StreamTestOutcome::outOfTime, true, 1'000'000'000'000};
  EXPECT_EQ(roundTrip(stream, readStreamTestFacts), stream);
  const MediaPacketFacts media{true, 3, 123456789, 2, 5, false};
  EXPECT_EQ(roundTrip(media, readMediaPacketFacts), media);
  EXPECT_EQ(roundTrip(CompressedFormat::zstd, readCompressedFormat), CompressedFormat::zstd);
  EXPECT_EQ(roundTrip(CheckBudget{15000}, readCheckBudget)->milliseconds, 15000);
}

TEST(DecoderProtocol, aReplyWithAnyValueOutOfPlaceIsRefused) {
  const auto read = [](const std::vector<std::byte>& bytes, auto reader) {
    Reader in(bytes);
    const auto value = reader(in);
    return value.has_value() && in.finished();
  };
  const PdfStructureFacts pdf{{true, false, false, 2}, 0, 0, 0, true};
  EXPECT_FALSE(read(tampered(pdf, 0, 2), readPdfStructureFacts));      // a Boolean of 2
  EXPECT_FALSE(read(tampered(pdf, 10, 0x80), readPdfStructureFacts));  // negative reader errors
  EXPECT_FALSE(read(tampered(pdf, 19, 7), readPdfStructureFacts));     // "complete" of 7

  const StreamTestFacts stream{StreamTestOutcome::intact, false, 10};
  EXPECT_FALSE(read(tampered(stream, 0, 6), readStreamTestFacts));     // no such outcome
  EXPECT_FALSE(read(tampered(stream, 9, 0x80), readStreamTestFacts));  // negative size

  const MediaPacketFacts media{true, 1, 10, 0, 0, true};
  EXPECT_FALSE(read(tampered(media, 4, 0x80), readMediaPacketFacts));   // negative streams
  EXPECT_FALSE(read(tampered(media, 12, 0x80), readMediaPacketFacts));  // negative packets

  Writer format;
  format.u8(4);
  EXPECT_FALSE(read(format.data(), readCompressedFormat));
  for (const std::int32_t milliseconds : {0, -5, kMaxCheckBudgetMilliseconds + 1}) {
    Writer budget;
    budget.i32(milliseconds);
    EXPECT_FALSE(read(budget.data(), readCheckBudget)) << milliseconds;
  }

  // Short and long payloads.
  Writer full;
  write(full, media);
  std::vector<std::byte> bytes = full.data();
  bytes.pop_back();
  EXPECT_FALSE(read(bytes, readMediaPacketFacts));
  bytes = full.data();
  bytes.push_back(std::byte{0});
  EXPECT_FALSE(read(bytes, readMediaPacketFacts));
}

PdfAnalysis sampleAnalysis() {
  PdfAnalysis analysis;
  analysis.opened = true;
  analysis.encrypted = true;
  analysis.pageCount = 3;
  analysis.textPageCount = 2;
  analysis.title = "Caf\u00E9";
  analysis.creator = "";
  analysis.modificationDate = -86400;
  analysis.firstPageSize = PageSize{595.28, 841.89};
  analysis.text = "one\n\ntwo \U0001F600";
  analysis.textComplete = false;
  return analysis;
}

std::optional<PdfAnalysis> roundTrip(const PdfAnalysis& analysis) {
  Writer out;
  write(out, analysis);
  Reader in(out.data());
  auto read = readPdfAnalysis(in);
  if (read && !in.finished()) return std::nullopt;
  return read;
}

TEST(PdfAnalysisRecord, survivesTheSocketAndRefusesEveryValueOutOfPlace) {
  EXPECT_EQ(roundTrip(PdfAnalysis{}), PdfAnalysis{});
  EXPECT_EQ(roundTrip(sampleAnalysis()), sampleAnalysis());

  const std::function<void(PdfAnalysis&)> corruptions[] = {
      [](PdfAnalysis& a) { a.pageCount = -1; },
      [](PdfAnalysis& a) { a.textPageCount = -1; },
      [](PdfAnalysis& a) { a.textPageCount = a.pageCount + 1; },
      [](PdfAnalysis& a) { a.title = "caf\xE9"; },
      [](PdfAnalysis& a) { a.producer = std::string(kMaxPdfInfoText + 1, 'x'); },
      [](PdfAnalysis& a) { a.text = "cut \xF0\x9F\x98"; },
      [](PdfAnalysis& a) { a.firstPageSize->width = std::numeric_limits<double>::quiet_NaN(); },
      [](PdfAnalysis& a) { a.firstPageSize->height = -1; },
      [](PdfAnalysis& a) { a.firstPageSize->height = std::numeric_limits<double>::infinity(); },
  };
  for (std::size_t i = 0; i < std::size(corruptions); ++i) {
    SCOPED_TRACE(i);
    PdfAnalysis analysis = sampleAnalysis();
    corruptions[i](analysis);
    EXPECT_FALSE(roundTrip(analysis));
  }

  // Cut anywhere, or with a flag that is neither 0 nor 1, the record does not read.
  Writer out;
  write(out, sampleAnalysis());
  const std::vector<std::byte> bytes = out.data();
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    Reader in(std::span<const std::byte>(bytes).first(length));
    EXPECT_FALSE(readPdfAnalysis(in)) << length;
  }
  std::vector<std::byte> flag = bytes;
  flag[1] = std::byte{2};  // "encrypted"
  Reader in(flag);
  EXPECT_FALSE(readPdfAnalysis(in));
}

TEST(PageRangeRecord, refusesNegativePagesAndCounts) {
  for (const PageRange range : {PageRange{}, PageRange{0, 0}, PageRange{150, 150}}) {
    Writer out;
    write(out, range);
    Reader in(out.data());
    EXPECT_EQ(readPageRange(in), range);
    EXPECT_TRUE(in.finished());
  }
  for (const PageRange range : {PageRange{-1, 3}, PageRange{0, -3}}) {
    Writer out;
    write(out, range);
    Reader in(out.data());
    EXPECT_FALSE(readPageRange(in));
  }
}

}  // namespace
}  // namespace lumenscribe::platform::decoder
