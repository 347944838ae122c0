// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/video_analysis.h"

#include <gtest/gtest.h>

#include <functional>

#include "lumenscribe/file_inspector.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

using platform::decoder::AudioTrackFacts;
using platform::decoder::MediaDescription;
using platform::decoder::VideoTrackFacts;
using Rows = std::vector<std::pair<std::string, std::string>>;

const std::filesystem::path kMedia = std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "media";
constexpr std::uint32_t kAvc1 = 0x61766331;

Rows rowsOf(const std::vector<InsightSection>& sections) {
  Rows rows;
  for (const auto& section : sections) {
    if (section.title != "Video") continue;
    for (const auto& row : section.rows) rows.emplace_back(row.label, row.value);
  }
  return rows;
}

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
  EXPECT_EQ(rowsOf(clip.sections), (Rows{{"Duration", "1:01"},
                                         {"Video Tracks", "1"},
                                         {"Audio Tracks", "1"},
                                         {"Dimensions", "1080 × 1920 pixels"},
                                         {"Orientation", "Portrait"},
                                         {"Frame Rate", "29.97 fps"},
                                         {"Video Bitrate", "8.00 Mbps"},
                                         {"Codec", "avc1"},
                                         {"Color Primaries", "bt709"},
                                         {"Transfer Function", "bt709"},
                                         {"YCbCr Matrix", "bt709"},
                                         {"Audio Bitrate", "128 kbps"},
                                         {"Audio Sample Rate", "48000 Hz"},
                                         {"Audio Channels", "2"}}));
  EXPECT_EQ(clip.sections.at(0).systemImage, "film.fill");
  EXPECT_EQ(clip.summaryItems, std::vector<std::string>{"Video"});
  const RawMetadata expected{{"Video Duration", "1:01"},
                             {"Video Track Count", "1"},
                             {"Video Audio Track Count", "1"},
                             {"Video Width", "1080"},
                             {"Video Height", "1920"},
                             {"Video Orientation", "Portrait"},
                             {"Video Frame Rate", "29.97 fps"},
                             {"Video Estimated Bitrate", "8.00 Mbps"},
                             {"Video Codec", "avc1"},
                             {"Video Color Primaries", "bt709"},
                             {"Video Transfer Function", "bt709"},
                             {"Video YCbCr Matrix", "bt709"},
                             {"Video Audio Bitrate", "128 kbps"},
                             {"Video Audio Sample Rate", "48000 Hz"},
                             {"Video Audio Channels", "2"},
                             {"Video Tag title", "Clip"},
                             {"Video Tag location", "+48.8584+002.2945/"},
                             {"Video Tag rotate", "90"}};
  EXPECT_EQ(clip.rawMetadata, expected);
  ASSERT_EQ(clip.findings.size(), 1u);
  EXPECT_EQ(clip.findings[0].title, "An audio track is present");
  EXPECT_EQ(clip.findings[0].detail,
            "This video contains 1 audio track(s). Lumenscribe reports their presence without "
            "playing the media.");
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
      {"30 fps", [](auto& m) { m.firstVideoTrack->nominalFrameRate = 30; }, "Frame Rate", "30 fps"},
      {"film", [](auto& m) { m.firstVideoTrack->nominalFrameRate = 24000.0f / 1001; }, "Frame Rate",
       "23.98 fps"},
      {"no frame rate", [](auto& m) { m.firstVideoTrack->nominalFrameRate = 0; }, "Frame Rate",
       "<missing>"},
      {"no video bitrate", [](auto& m) { m.firstVideoTrack->estimatedDataRate = 0; },
       "Video Bitrate", "<missing>"},
      {"audio bitrate rounded down", [](auto& m) { m.firstAudioTrack->estimatedDataRate = 127400; },
       "Audio Bitrate", "127 kbps"},
      {"a code that is no text", [](auto& m) { m.firstVideoTrack->codec = 0x01000000; }, "Codec",
       "16777216"},
      {"no codec", [](auto& m) { m.firstVideoTrack->codec.reset(); }, "Codec", "<missing>"},
      {"no colour", [](auto& m) { m.firstVideoTrack->transferFunction.reset(); },
       "Transfer Function", "<missing>"},
      {"no picture size", [](auto& m) { m.firstVideoTrack->naturalHeight = 0; }, "Dimensions",
       "<missing>"},
      {"no duration", [](auto& m) { m.duration.reset(); }, "Duration", "<missing>"},
      {"a zero duration", [](auto& m) { m.duration = 0; }, "Duration", "<missing>"},
      {"no sample rate", [](auto& m) { m.firstAudioTrack->sampleRate = 0; }, "Audio Sample Rate",
       "<missing>"},
      {"no channels", [](auto& m) { m.firstAudioTrack->channelCount = 0; }, "Audio Channels",
       "<missing>"},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    MediaDescription media = phoneClip();
    test.change(media);
    EXPECT_EQ(rowValue(rowsOf(analyzed(media).sections), test.label), test.value);
  }
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

TEST(VideoAnalysis, turnsTheStoredSizeAsTheDisplayMatrixSays) {
  const struct {
    double degrees;
    double width;
    double height;
  } cases[] = {{0, 1920, 1080},     {90, -1080, 1920},  {-90, 1080, -1920},
               {180, -1920, -1080}, {270, 1080, -1920}, {450, -1080, 1920}};
  for (const auto& test : cases) {
    const DisplayedSize size = displayedSize(1920, 1080, test.degrees);
    EXPECT_EQ(size.width, test.width) << test.degrees;
    EXPECT_EQ(size.height, test.height) << test.degrees;
  }
  const DisplayedSize tilted = displayedSize(100, 0, 45);
  EXPECT_NEAR(tilted.width, 70.71, 0.01);
  EXPECT_NEAR(tilted.height, 70.71, 0.01);
}

// Real files through the whole inspection, with the real decoder worker; ffprobe agrees
// (tests/data/media/ffprobe.txt).
TEST(VideoAnalysis, realFilesGiveTheRowsFfprobeAgreesWith) {
  const FileInspector inspector(
      std::shared_ptr<platform::DecoderClient>(&test::sharedDecoder(), [](auto*) {}));
  const struct {
    const char* file;
    Rows rows;
  } cases[] = {
      {"portrait.mp4",
       {{"Duration", "0:01"},
        {"Video Tracks", "1"},
        {"Audio Tracks", "1"},
        {"Dimensions", "1080 × 1920 pixels"},
        {"Orientation", "Portrait"},
        {"Frame Rate", "29.97 fps"},
        {"Video Bitrate", "0.06 Mbps"},
        {"Codec", "avc1"},
        {"Color Primaries", "bt709"},
        {"Transfer Function", "bt709"},
        {"YCbCr Matrix", "bt709"},
        {"Audio Bitrate", "96 kbps"},
        {"Audio Sample Rate", "48000 Hz"},
        {"Audio Channels", "2"}}},
      {"film_23976.mp4",
       {{"Duration", "0:01"},
        {"Video Tracks", "1"},
        {"Audio Tracks", "1"},
        {"Dimensions", "640 × 360 pixels"},
        {"Orientation", "Landscape"},
        {"Frame Rate", "23.98 fps"},
        {"Video Bitrate", "0.23 Mbps"},
        {"Codec", "avc1"},
        {"Audio Bitrate", "49 kbps"},
        {"Audio Sample Rate", "44100 Hz"},
        {"Audio Channels", "1"}}},
      // Matroska names no codec tag and no bitrate.
      {"silent.mkv",
       {{"Duration", "0:01"},
        {"Video Tracks", "1"},
        {"Audio Tracks", "0"},
        {"Dimensions", "320 × 240 pixels"},
        {"Orientation", "Landscape"},
        {"Frame Rate", "25 fps"},
        {"Codec", "vp09"}}},
      {"clip.mov",
       {{"Duration", "0:00"},
        {"Video Tracks", "1"},
        {"Audio Tracks", "1"},
        {"Dimensions", "160 × 90 pixels"},
        {"Orientation", "Landscape"},
        {"Frame Rate", "30 fps"},
        {"Video Bitrate", "0.32 Mbps"},
        {"Codec", "jpeg"},
        {"YCbCr Matrix", "bt470bg"},
        {"Audio Bitrate", "706 kbps"},
        {"Audio Sample Rate", "22050 Hz"},
        {"Audio Channels", "2"}}},
      {"text_named.mp4", {{"Video Tracks", "0"}, {"Audio Tracks", "0"}}},
      {"moov_missing.mp4", {{"Video Tracks", "0"}, {"Audio Tracks", "0"}}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.file);
    const auto result = inspector.inspect(kMedia / test.file);
    ASSERT_TRUE(result);
    EXPECT_EQ(rowsOf(result->sections), test.rows);
  }
  const auto silent = inspector.inspect(kMedia / "silent.mkv");
  ASSERT_TRUE(silent);
  EXPECT_EQ(silent->rawMetadata.at("Video Tag ENCODER"), "Lavc59.37.100 libvpx-vp9");
  EXPECT_EQ(silent->rawMetadata.at("Video Tag DURATION"), "00:00:01.000000000");
  EXPECT_EQ(silent->rawMetadata.at("Video Tag title"), "Silent");
}

}  // namespace
}  // namespace lumenscribe
