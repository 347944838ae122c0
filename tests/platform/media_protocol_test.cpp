// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The media description as it crosses from the decoder worker: what one side writes the
// other reads back, and a description out of bounds is refused whole.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "platform/decoder_protocol.h"

namespace lumenscribe::platform::decoder {
namespace {

std::optional<MediaDescription> roundTrip(const MediaDescription& media) {
  Writer out;
  write(out, media);
  Reader in(out.data());
  auto read = readMediaDescription(in);
  if (!in.finished()) return std::nullopt;
  return read;
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
  EXPECT_EQ(roundTrip(movie()), movie());
  MediaDescription unreadable;
  unreadable.audioError = "Invalid data found when processing input";
  EXPECT_EQ(roundTrip(unreadable), unreadable);
  MediaDescription silent = movie();
  silent.audioFormat.reset();
  silent.audioError = "Stream not found";
  silent.audioTrackCount = 0;
  silent.firstAudioTrack.reset();
  silent.firstVideoTrack->codec.reset();
  silent.firstVideoTrack->colorPrimaries.reset();
  silent.duration.reset();
  EXPECT_EQ(roundTrip(silent), silent);
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
    EXPECT_EQ(roundTrip(media), std::nullopt);
  }
  // A reply cut anywhere is refused, never read past its end.
  Writer out;
  write(out, movie());
  for (std::size_t size = 0; size < out.data().size(); ++size) {
    Reader in(std::span(out.data()).first(size));
    EXPECT_EQ(readMediaDescription(in), std::nullopt) << size;
  }
}

}  // namespace
}  // namespace lumenscribe::platform::decoder
