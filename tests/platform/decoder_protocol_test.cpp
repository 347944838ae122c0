// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/decoder_protocol.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <functional>
#include <limits>

namespace lumenscribe::platform::decoder {
namespace {

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
