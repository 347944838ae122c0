// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The records of the worker's replies: what a worker writes reads back, and nothing else does.
#include "platform/decoder_protocol.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <variant>

namespace lumenscribe::platform::decoder {
namespace {

using Map = MetadataValue::Map;
using Array = MetadataValue::Array;

std::vector<std::byte> written(const auto& record) {
  Writer out;
  write(out, record);
  return std::move(out).data();
}

// The record read back from `bytes`; nothing unless it read them all and no more.
template <class Read>
auto readAll(const std::vector<std::byte>& bytes, Read read)
    -> decltype(read(std::declval<Reader&>())) {
  Reader in(bytes);
  auto value = read(in);
  if (!in.finished()) return std::nullopt;
  return value;
}

template <class Record, class Read>
auto roundTrip(const Record& record, Read read) {
  return readAll(written(record), read);
}

// Whether every cut of the record's bytes short of the whole is refused.
template <class Record, class Read>
bool refusedWhenCutAnywhere(const Record& record, Read read) {
  const std::vector<std::byte> bytes = written(record);
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    Reader in(std::span<const std::byte>(bytes).first(length));
    if (read(in)) return false;
  }
  return true;
}

// The bytes of `record` with the byte at `index` replaced.
template <class Record>
std::vector<std::byte> tampered(const Record& record, std::size_t index, std::uint8_t byte) {
  std::vector<std::byte> bytes = written(record);
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
    return readAll(bytes, reader).has_value();
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
  EXPECT_TRUE(refusedWhenCutAnywhere(media, readMediaPacketFacts));
  std::vector<std::byte> longer = written(media);
  longer.push_back(std::byte{0});
  EXPECT_FALSE(read(longer, readMediaPacketFacts));
}

TEST(PreviewRecord, aPictureLargerThanTheBoxAskedForIsRefused) {
  const std::optional<RgbaImage> picture =
      RgbaImage{40, 30, std::vector<std::uint8_t>(40 * 30 * 4)};
  const auto inBox = [](PreviewBox box) {
    return [box](Reader& in) { return readPreview(in, box); };
  };
  const auto read = roundTrip(picture, inBox({40, 30}));
  ASSERT_TRUE(read && *read);
  EXPECT_EQ((*read)->pixels, picture->pixels);
  EXPECT_FALSE(roundTrip(picture, inBox({39, 30})));
  EXPECT_FALSE(roundTrip(picture, inBox({40, 29})));
  EXPECT_TRUE(refusedWhenCutAnywhere(picture, inBox({40, 30})));
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

TEST(PdfAnalysisRecord, survivesTheSocketAndRefusesEveryValueOutOfPlace) {
  EXPECT_EQ(roundTrip(PdfAnalysis{}, readPdfAnalysis), PdfAnalysis{});
  EXPECT_EQ(roundTrip(sampleAnalysis(), readPdfAnalysis), sampleAnalysis());

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
    EXPECT_FALSE(roundTrip(analysis, readPdfAnalysis));
  }
  // Cut anywhere, or with a flag that is neither 0 nor 1, the record does not read.
  EXPECT_TRUE(refusedWhenCutAnywhere(sampleAnalysis(), readPdfAnalysis));
  EXPECT_FALSE(readAll(tampered(sampleAnalysis(), 1, 2), readPdfAnalysis));  // "encrypted"
}

TEST(PageRangeRecord, refusesNegativePagesAndCounts) {
  for (const PageRange range : {PageRange{}, PageRange{0, 0}, PageRange{150, 150}}) {
    EXPECT_EQ(roundTrip(range, readPageRange), range);
  }
  EXPECT_FALSE(roundTrip(PageRange{-1, 3}, readPageRange));
  EXPECT_FALSE(roundTrip(PageRange{0, -3}, readPageRange));
}

ImageProperties withProperties(Map properties) { return {1, std::move(properties)}; }

using Reply = std::optional<std::optional<ImageProperties>>;

Reply properties(const std::vector<std::byte>& bytes) {
  return readAll(bytes, readImageProperties);
}

TEST(PropertyMapProtocol, whatTheWorkerWritesTheEngineReadsBack) {
  const ImageProperties photo{
      3,
      {{"PixelWidth", 4032},
       {"DPIWidth", 72.5},
       {"ProfileName", "Display P3 — ×·ƒ"},
       {"{Exif}", Map{{"ISOSpeedRatings", Array{100, 200}}, {"FNumber", 2.8}}},
       {"{MakerNote}", Map{{"Nikon3", Map{{"Quality", "FINE"}, {"Empty", Map{}}}}}},
       {"Nothing", Array{}},
       {"", ""}}};
  EXPECT_EQ(properties(written(std::optional(photo))), Reply(photo));
  EXPECT_EQ(properties(written(std::optional<ImageProperties>())),
            Reply(std::optional<ImageProperties>()));
  // Values of no plain kind travel as text.
  const auto other =
      properties(written(std::optional(withProperties({{"x", MetadataValue::Other{"thing"}}}))));
  ASSERT_TRUE(other && *other);
  EXPECT_EQ((*other)->properties.at("x"), MetadataValue("thing"));
}

// Maps within maps, `levels` of them counting the top level, the innermost holding `leaf`.
Map nested(int levels, MetadataValue leaf = "leaf") {
  Map map{{"k", std::move(leaf)}};
  for (int level = 1; level < levels; ++level) map = Map{{"k", std::move(map)}};
  return map;
}

TEST(PropertyMapProtocol, refusesRepliesOutOfBounds) {
  const std::string invalidUtf8 = "\xC3\x28";
  const std::string overlong = "\xC0\xAF";
  const std::string surrogate = "\xED\xA0\x80";
  Array tooMany(kMaxPropertyNodes, MetadataValue(1));
  struct Case {
    const char* what;
    ImageProperties properties;
    bool accepted;
  };
  const Case cases[] = {
      {"as deep as allowed", withProperties(nested(kMaxPropertyDepth)), true},
      {"one level deeper", withProperties(nested(kMaxPropertyDepth + 1)), false},
      {"an array as deep as allowed", withProperties(nested(kMaxPropertyDepth - 1, Array{1})),
       true},
      {"an array one level deeper", withProperties(nested(kMaxPropertyDepth, Array{1})), false},
      {"too many values", withProperties({{"k", tooMany}}), false},
      {"a text as long as allowed", withProperties({{"k", std::string(kMaxPropertyText, 'a')}}),
       true},
      {"a longer text", withProperties({{"k", std::string(kMaxPropertyText + 1, 'a')}}), false},
      {"a longer key", withProperties({{std::string(kMaxPropertyKey + 1, 'k'), 1}}), false},
      {"text that is not UTF-8", withProperties({{"k", invalidUtf8}}), false},
      {"an overlong form", withProperties({{"k", overlong}}), false},
      {"a surrogate", withProperties({{"k", surrogate}}), false},
      {"a key that is not UTF-8", withProperties({{invalidUtf8, 1}}), false},
      {"not a number", withProperties({{"k", std::nan("")}}), false},
      {"infinity", withProperties({{"k", std::numeric_limits<double>::infinity()}}), false},
      {"no image", {0, {}}, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(properties(written(std::optional(c.properties))).has_value(), c.accepted) << c.what;
  }
}

TEST(PropertyMapProtocol, refusesMalformedBytes) {
  const auto good = std::optional(withProperties({{"a", 1}, {"b", "two"}}));
  // Every cut short of the whole reply fails, and so does one byte more.
  EXPECT_TRUE(refusedWhenCutAnywhere(good, readImageProperties));
  auto longer = written(good);
  longer.push_back(std::byte{0});
  EXPECT_FALSE(properties(longer));

  // A present reply of one image whose properties are written as `body`, field by field:
  // kinds are 1 text, 2 integer, 4 array, 5 map.
  struct Text {
    const char* text;
  };
  const auto patched =
      [](std::initializer_list<std::variant<std::uint8_t, std::uint32_t, std::int64_t, Text>>
             body) {
        Writer out;
        out.u8(1);
        out.i32(1);
        for (const auto& field : body) {
          std::visit(
              [&out](auto value) {
                if constexpr (std::is_same_v<decltype(value), std::uint8_t>) out.u8(value);
                if constexpr (std::is_same_v<decltype(value), std::uint32_t>) out.u32(value);
                if constexpr (std::is_same_v<decltype(value), std::int64_t>) out.i64(value);
                if constexpr (std::is_same_v<decltype(value), Text>) out.text(value.text);
              },
              field);
        }
        return std::move(out).data();
      };
  using U8 = std::uint8_t;
  using U32 = std::uint32_t;
  using I64 = std::int64_t;
  struct Case {
    const char* what;
    std::vector<std::byte> bytes;
  };
  const Case cases[] = {
      {"a top level that is not a map", patched({U8{1}, Text{"x"}})},
      {"a repeated key",
       patched({U8{5}, U32{2}, Text{"k"}, U8{2}, I64{1}, Text{"k"}, U8{2}, I64{2}})},
      {"an unknown kind", patched({U8{5}, U32{1}, Text{"k"}, U8{9}})},
      {"a count past what is there", patched({U8{5}, U32{0xFFFFFFFF}, Text{"k"}})},
      {"an array claiming more values than allowed",
       patched({U8{5}, U32{1}, Text{"k"}, U8{4}, U32{kMaxPropertyNodes + 1}})},
      {"an array claiming four billion values, too many to make room for",
       patched({U8{5}, U32{1}, Text{"k"}, U8{4}, U32{0xFFFFFFFF}})},
      {"a presence flag of 2", std::vector{std::byte{2}}},
  };
  for (const Case& c : cases) EXPECT_FALSE(properties(c.bytes)) << c.what;
}

MediaDescription movie() {
  MediaDescription media;
  media.opened = true;
  media.audioFormat = AudioProcessingFormat{48000, 2, 32, 0x6C70636D, 480000};
  media.duration = 10.01;
  media.videoTrackCount = 1;
  media.audioTrackCount = 2;
  media.firstVideoTrack =
      VideoTrackFacts{1920, 1080, 90, 29.97f, 8e6f, 0x61766331, "bt709", "smpte2084", "bt2020nc"};
  media.firstAudioTrack = AudioTrackFacts{127500, 48000, 2};
  media.metadata = {{{"title", "Clip — ×·ƒ"}, {"empty", ""}}, {}, {{"language", "und"}}};
  return media;
}

TEST(MediaProtocol, whatTheWorkerWritesTheEngineReadsBack) {
  EXPECT_EQ(roundTrip(movie(), readMediaDescription), movie());
  MediaDescription unreadable;
  unreadable.audioError = "Invalid data found when processing input";
  EXPECT_EQ(roundTrip(unreadable, readMediaDescription), unreadable);
  MediaDescription silent = movie();
  silent.audioFormat.reset();
  silent.audioError = "Stream not found";
  silent.audioTrackCount = 0;
  silent.firstAudioTrack.reset();
  silent.firstVideoTrack->codec.reset();
  silent.firstVideoTrack->colorPrimaries.reset();
  silent.duration.reset();
  EXPECT_EQ(roundTrip(silent, readMediaDescription), silent);
}

TEST(MediaProtocol, refusesADescriptionOutOfBounds) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  const std::vector<MediaTag> fullGroup(kMaxMediaTags / 2, MediaTag{"k", "v"});
  const struct {
    const char* name;
    std::function<void(MediaDescription&)> change;
  } cases[] = {
      {"sample rate not a number", [&](auto& m) { m.audioFormat->sampleRate = nan; }},
      {"negative sample rate", [](auto& m) { m.audioFormat->sampleRate = -1; }},
      {"too many channels", [](auto& m) { m.audioFormat->channelCount = kMaxMediaChannels + 1; }},
      {"samples wider than 64 bits", [](auto& m) { m.audioFormat->bitsPerChannel = 65; }},
      {"a frame count below -1", [](auto& m) { m.audioFormat->frameCount = -2; }},
      {"a format and an error", [](auto& m) { m.audioError = "Stream not found"; }},
      {"neither format nor error", [](auto& m) { m.audioFormat.reset(); }},
      {"an error too long",
       [](auto& m) {
         m.audioFormat.reset();
         m.audioError = std::string(kMaxMediaText + 1, 'e');
       }},
      {"an infinite duration", [&](auto& m) { m.duration = infinity; }},
      {"a negative track count", [](auto& m) { m.videoTrackCount = -1; }},
      {"too many tracks", [](auto& m) { m.audioTrackCount = kMaxMediaStreams + 1; }},
      {"a first track of none", [](auto& m) { m.videoTrackCount = 0; }},
      {"no first track of one", [](auto& m) { m.firstAudioTrack.reset(); }},
      {"a file not opened with tracks", [](auto& m) { m.opened = false; }},
      {"a turn past a whole one", [](auto& m) { m.firstVideoTrack->rotationDegrees = 400; }},
      {"a frame rate not a number", [&](auto& m) { m.firstVideoTrack->nominalFrameRate = nan; }},
      {"a negative width", [](auto& m) { m.firstVideoTrack->naturalWidth = -1; }},
      {"a negative bitrate", [](auto& m) { m.firstAudioTrack->estimatedDataRate = -1; }},
      {"an empty colour name", [](auto& m) { m.firstVideoTrack->ycbcrMatrix = ""; }},
      {"a colour name not UTF-8", [](auto& m) { m.firstVideoTrack->colorPrimaries = "\xff"; }},
      {"an empty tag key", [](auto& m) { m.metadata[0][0].key = ""; }},
      {"a tag key not UTF-8", [](auto& m) { m.metadata[0][0].key = "ti\xc3tle"; }},
      {"a tag value not UTF-8", [](auto& m) { m.metadata[0][0].value = "\xed\xa0\x80"; }},
      {"a tag key too long",
       [](auto& m) { m.metadata[0][0].key = std::string(kMaxMediaTagKey + 1, 'k'); }},
      {"a tag value too long",
       [](auto& m) { m.metadata[0][0].value = std::string(kMaxMediaTagValue + 1, 'v'); }},
      {"more tags than the budget, over several groups",
       [&](auto& m) {
         m.metadata = {fullGroup, fullGroup, {{"one", "more"}}};
       }},
      {"more groups than streams", [](auto& m) { m.metadata.resize(kMaxMediaStreams + 2); }},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    MediaDescription media = movie();
    test.change(media);
    EXPECT_EQ(roundTrip(media, readMediaDescription), std::nullopt);
  }
  // A reply cut anywhere is refused, never read past its end.
  EXPECT_TRUE(refusedWhenCutAnywhere(movie(), readMediaDescription));
}

TEST(CleanCopyProtocol, recordsReadBackAndRefuseEveryValueOutOfPlace) {
  const std::optional<PixelFingerprint> pixels = PixelFingerprint{{1, 2, 3}, 640, 480};
  EXPECT_EQ(roundTrip(pixels, readPixelFingerprint), pixels);
  const std::optional<CleanCopySource> source = CleanCopySource{ImageFormat::heic, 1, 64, 48};
  EXPECT_EQ(roundTrip(source, readCleanCopySource), source);
  const CleanCopyOutcome outcome{CleanCopyStatus::written, 1 << 20};
  EXPECT_EQ(roundTrip(outcome, readCleanCopyOutcome), outcome);
  const auto request =
      roundTrip(CleanCopyRequest{CleanCopyKind::standard, 100}, readCleanCopyRequest);
  ASSERT_TRUE(request);
  EXPECT_EQ(request->kind, CleanCopyKind::standard);
  EXPECT_TRUE(refusedWhenCutAnywhere(pixels, readPixelFingerprint));
  EXPECT_TRUE(refusedWhenCutAnywhere(source, readCleanCopySource));
  EXPECT_TRUE(refusedWhenCutAnywhere(outcome, readCleanCopyOutcome));

  const auto refused = [](const auto& record, auto read) {
    return !roundTrip(record, read).has_value();
  };
  EXPECT_TRUE(refused(std::optional(PixelFingerprint{{}, 0, 480}), readPixelFingerprint));
  EXPECT_TRUE(refused(std::optional(CleanCopySource{static_cast<ImageFormat>(8), 1, 1, 1}),
                      readCleanCopySource));
  EXPECT_TRUE(
      refused(std::optional(CleanCopySource{ImageFormat::png, 0, 1, 1}), readCleanCopySource));
  EXPECT_TRUE(refused(CleanCopyRequest{static_cast<CleanCopyKind>(2), 0}, readCleanCopyRequest));
  EXPECT_TRUE(refused(CleanCopyRequest{CleanCopyKind::standard, 101}, readCleanCopyRequest));
  EXPECT_TRUE(refused(CleanCopyOutcome{static_cast<CleanCopyStatus>(6), 0}, readCleanCopyOutcome));
  EXPECT_TRUE(refused(CleanCopyOutcome{CleanCopyStatus::written, -1}, readCleanCopyOutcome));
}

}  // namespace
}  // namespace lumenscribe::platform::decoder
