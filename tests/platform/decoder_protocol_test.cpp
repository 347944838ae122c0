// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The whole-file checks' records: what a worker writes reads back, and nothing else does.
#include "platform/decoder_protocol.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace lumenscribe::platform::decoder
