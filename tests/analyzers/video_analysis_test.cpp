// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/video_analysis.h"

#include <gtest/gtest.h>

#include <functional>

#include "test_files.h"

namespace lumenscribe {
namespace {

using platform::decoder::AudioTrackFacts;
using platform::decoder::MediaDescription;
using platform::decoder::VideoTrackFacts;
using test::Rows;

constexpr std::uint32_t kAvc1 = 0x61766331;

Rows rowsOf(const std::vector<InsightSection>& sections) { return test::rowsOf(sections, "Video"); }

std::string rowValue(const Rows& rows, std::string_view label) {
  for (const auto& [name, value] : rows) {
    if (name == label) return value;
  }
  return "<missing>";
}

MediaDescription phoneClip() {
  MediaDescription media;
  media.opened = true;
  media.audioFormat = platform::decoder::AudioProcessingFormat{48000, 2, 32, 0x6C70636D, 48000};
  media.duration = 61.2;
  media.videoTrackCount = 1;
  media.audioTrackCount = 1;
  media.firstVideoTrack =
      VideoTrackFacts{1920, 1080, 90, 30000.0f / 1001, 8e6f, kAvc1, "bt709", "bt709", "bt709"};
  media.firstAudioTrack = AudioTrackFacts{127500, 48000, 2};
  media.metadata = {{{"title", "Clip"}, {"location", "+48.8584+002.2945/"}},
                    {{"handler_name", "   "}, {"rotate", "90"}}};
  return media;
}

Accumulators analyzed(const MediaProbe& media) {
  Accumulators accumulators;
  analyzeVideo(media, accumulators);
  return accumulators;
}

TEST(VideoAnalysis, describesAPortraitPhoneClip) {
  const Accumulators clip = analyzed(phoneClip());
  EXPECT_EQ(test::block(clip.sections, "Video"),
            "Duration: 1:01\nVideo Tracks: 1\nAudio Tracks: 1\nDimensions: 1080 × 1920 pixels\n"
            "Orientation: Portrait\nFrame Rate: 29.97 fps\nVideo Bitrate: 8.00 Mbps\nCodec: avc1\n"
            "Color Primaries: bt709\nTransfer Function: bt709\nYCbCr Matrix: bt709\n"
            "Audio Bitrate: 128 kbps\nAudio Sample Rate: 48000 Hz\nAudio Channels: 2\n");
  EXPECT_EQ(clip.summaryItems, std::vector<std::string>{"Video"});
  // Tags without text make no raw entry.
  EXPECT_EQ(test::block(clip.rawMetadata),
            "Video Audio Bitrate: 128 kbps\nVideo Audio Channels: 2\n"
            "Video Audio Sample Rate: 48000 Hz\nVideo Audio Track Count: 1\nVideo Codec: avc1\n"
            "Video Color Primaries: bt709\nVideo Duration: 1:01\n"
            "Video Estimated Bitrate: 8.00 Mbps\nVideo Frame Rate: 29.97 fps\nVideo Height: 1920\n"
            "Video Orientation: Portrait\nVideo Tag location: +48.8584+002.2945/\n"
            "Video Tag rotate: 90\nVideo Tag title: Clip\nVideo Track Count: 1\n"
            "Video Transfer Function: bt709\nVideo Width: 1080\nVideo YCbCr Matrix: bt709\n");
  ASSERT_EQ(clip.findings.size(), 1u);
  EXPECT_EQ(clip.findings[0].title, "An audio track is present");
  EXPECT_NE(clip.findings[0].detail.find("contains 1 audio"), std::string::npos);
  EXPECT_EQ(clip.findings[0].level, PrivacyLevel::neutral);
}

TEST(VideoAnalysis, rowValuesFollowTheirRules) {
  const struct {
    const char* name;
    std::function<void(MediaDescription&)> change;
    const char* label;
    const char* value;
  } cases[] = {
      {"halves round away from zero",
       [](auto& m) {
         m.firstVideoTrack->rotationDegrees = 0;
         m.firstVideoTrack->naturalWidth = 1280.5;
         m.firstVideoTrack->naturalHeight = 720;
       },
       "Dimensions", "1281 × 720 pixels"},
      {"a half turn keeps the sides", [](auto& m) { m.firstVideoTrack->rotationDegrees = -180; },
       "Dimensions", "1920 × 1080 pixels"},
      {"a square", [](auto& m) { m.firstVideoTrack->naturalWidth = 1080; }, "Orientation",
       "Square"},
      {"a quarter turn the other way", [](auto& m) { m.firstVideoTrack->rotationDegrees = 270; },
       "Orientation", "Portrait"},
      {"five quarter turns", [](auto& m) { m.firstVideoTrack->rotationDegrees = 450; },
       "Dimensions", "1080 × 1920 pixels"},
      {"a tilt", [](auto& m) { m.firstVideoTrack->rotationDegrees = 45; }, "Dimensions",
       "594 × 2121 pixels"},
      {"30 fps", [](auto& m) { m.firstVideoTrack->nominalFrameRate = 30; }, "Frame Rate", "30 fps"},
      {"film", [](auto& m) { m.firstVideoTrack->nominalFrameRate = 24000.0f / 1001; }, "Frame Rate",
       "23.98 fps"},
      {"audio bitrate rounded down", [](auto& m) { m.firstAudioTrack->estimatedDataRate = 127400; },
       "Audio Bitrate", "127 kbps"},
      {"a code that is no text", [](auto& m) { m.firstVideoTrack->codec = 0x01000000; }, "Codec",
       "16777216"},
      {"no picture size", [](auto& m) { m.firstVideoTrack->naturalHeight = 0; }, "Dimensions",
       "<missing>"},
      {"a zero duration", [](auto& m) { m.duration = 0; }, "Duration", "<missing>"},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    MediaDescription media = phoneClip();
    test.change(media);
    EXPECT_EQ(rowValue(rowsOf(analyzed(media).sections), test.label), test.value);
  }
  // Facts a file does not have make no row; the others stay.
  MediaDescription sparse = phoneClip();
  sparse.firstVideoTrack->nominalFrameRate = 0;
  sparse.firstVideoTrack->estimatedDataRate = 0;
  sparse.firstVideoTrack->codec.reset();
  sparse.firstVideoTrack->transferFunction.reset();
  sparse.duration.reset();
  sparse.firstAudioTrack->sampleRate = 0;
  sparse.firstAudioTrack->channelCount = 0;
  const Rows kept = rowsOf(analyzed(sparse).sections);
  for (const char* label : {"Frame Rate", "Video Bitrate", "Codec", "Transfer Function", "Duration",
                            "Audio Sample Rate", "Audio Channels"}) {
    EXPECT_EQ(rowValue(kept, label), "<missing>") << label;
  }
  EXPECT_EQ(kept.size(), 7u);
  // The orientation is judged before rounding: 720.4 by 720 shows as 720 by 720, and is
  // still wider than tall.
  MediaDescription nearlySquare = phoneClip();
  nearlySquare.firstVideoTrack->rotationDegrees = 0;
  nearlySquare.firstVideoTrack->naturalWidth = 720.4;
  nearlySquare.firstVideoTrack->naturalHeight = 720;
  const Rows rows = rowsOf(analyzed(nearlySquare).sections);
  EXPECT_EQ(rowValue(rows, "Dimensions"), "720 × 720 pixels");
  EXPECT_EQ(rowValue(rows, "Orientation"), "Landscape");
}

TEST(VideoAnalysis, aFileWithoutTracksStillGetsItsSection) {
  MediaDescription nothing;
  nothing.audioError = "Invalid data found when processing input";
  MediaDescription silent = phoneClip();
  silent.audioTrackCount = 0;
  silent.firstAudioTrack.reset();
  for (const MediaProbe& media :
       {MediaProbe(nothing), MediaProbe(make_error_code(platform::DecoderError::stopped))}) {
    const Accumulators empty = analyzed(media);
    EXPECT_EQ(rowsOf(empty.sections), (Rows{{"Video Tracks", "0"}, {"Audio Tracks", "0"}}));
    EXPECT_EQ(empty.summaryItems, std::vector<std::string>{"Video"});
    EXPECT_TRUE(empty.findings.empty());
    EXPECT_EQ(empty.rawMetadata.size(), 2u);
  }
  const Accumulators quiet = analyzed(silent);
  EXPECT_EQ(rowValue(rowsOf(quiet.sections), "Audio Tracks"), "0");
  EXPECT_EQ(rowValue(rowsOf(quiet.sections), "Audio Sample Rate"), "<missing>");
  EXPECT_TRUE(quiet.findings.empty());
}

}  // namespace
}  // namespace lumenscribe
