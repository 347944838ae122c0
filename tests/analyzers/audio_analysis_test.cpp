// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/audio_analysis.h"

#include <gtest/gtest.h>

#include <cmath>

#include "lumenscribe/file_inspector.h"
#include "media_fixtures.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

using platform::decoder::AudioProcessingFormat;
using platform::decoder::MediaDescription;
using platform::decoder::MediaTag;
using test::Rows;
using test::rowsOf;

const std::filesystem::path& kMedia = test::kMediaFixtures;
constexpr std::uint32_t kLinearPcm = 0x6C70636D;  // "lpcm"

MediaDescription audioFile(double seconds, std::vector<std::vector<MediaTag>> metadata = {}) {
  MediaDescription media;
  media.opened = true;
  media.audioFormat =
      AudioProcessingFormat{44100, 2, 32, kLinearPcm, std::llround(seconds * 44100)};
  media.duration = seconds;
  media.audioTrackCount = 1;
  media.firstAudioTrack = platform::decoder::AudioTrackFacts{128000, 44100, 2};
  media.metadata = std::move(metadata);
  return media;
}

Accumulators analyzed(const MediaProbe& media) {
  Accumulators accumulators;
  analyzeAudio(media, accumulators);
  return accumulators;
}

TEST(AudioAnalysis, streamRowsComeFromTheDecodedFormat) {
  const Accumulators song = analyzed(audioFile(185));
  EXPECT_EQ(
      test::block(song.sections, "Audio"),
      "Sample Rate: 44100 Hz\nChannels: 2\nDuration: 3:05\nBit Depth: 32-bit\nFormat: lpcm\n");
  EXPECT_EQ(song.summaryItems, std::vector<std::string>{"Audio"});
  EXPECT_EQ(song.rawMetadata.at("Audio Sample Rate"), "44100 Hz");
  EXPECT_EQ(song.rawMetadata.at("Audio Duration"), "3:05");
  EXPECT_TRUE(song.findings.empty());

  // Without a frame count or a sample rate, the container's duration stands in, last.
  MediaDescription unknownLength = audioFile(125.6);
  unknownLength.audioFormat->frameCount = -1;
  unknownLength.audioFormat->bitsPerChannel = 0;
  unknownLength.audioFormat->formatCode = 0;
  EXPECT_EQ(rowsOf(analyzed(unknownLength).sections, "Audio"),
            (Rows{{"Sample Rate", "44100 Hz"}, {"Channels", "2"}, {"Duration", "2:06"}}));
  MediaDescription noRate = audioFile(10);
  noRate.audioFormat->sampleRate = 0;
  noRate.duration = 12;
  EXPECT_EQ(analyzed(noRate).rawMetadata.at("Audio Duration"), "0:12");
  // A container duration of zero or less, or none, gives no row.
  for (const std::optional<double> duration :
       {std::optional(0.0), std::optional(-5.0), std::optional<double>()}) {
    MediaDescription media = unknownLength;
    media.duration = duration;
    EXPECT_FALSE(analyzed(media).rawMetadata.contains("Audio Duration"));
  }
}

TEST(AudioAnalysis, tagsGetRowsByTheirKeysAndAlwaysARawEntry) {
  const Accumulators tagged = analyzed(audioFile(2, {{{"title", "  Song  "},
                                                      {"ALBUM_ARTIST", "Band"},
                                                      {"album", "Album"},
                                                      {"TYEAR", "1999"},
                                                      {"description", "Liner\nnotes\n"},
                                                      {"lyricist", "Writer"},
                                                      {"comment", " \t\n "},
                                                      {"copyright", "\u00A0© 2024\u2003"}},
                                                     {{"artist", "Band"},
                                                      {"title", "Song"},
                                                      {"genre", "Ambient"},
                                                      {"COMPOSER", "Someone"},
                                                      {"author", "Poet"},
                                                      {"creation_date", "2001"}}}));
  EXPECT_EQ(test::block(tagged.sections, "Audio Tags"),
            "Title: Song\nArtist: Band\nAlbum: Album\nDate: 1999\nComment: Liner\nnotes\n"
            "Copyright: © 2024\nGenre: Ambient\nComposer: Someone\nArtist: Poet\nDate: 2001\n");
  EXPECT_EQ(tagged.summaryItems, (std::vector<std::string>{"Audio", "Audio Tags"}));
  ASSERT_EQ(tagged.findings.size(), 1u);
  EXPECT_EQ(tagged.findings[0].title, "Descriptive audio tags are embedded");
  EXPECT_EQ(tagged.findings[0].level, PrivacyLevel::notice);
  EXPECT_EQ(tagged.rawMetadata.at("Audio Tag title"), "Song");
  EXPECT_EQ(tagged.rawMetadata.at("Audio Tag lyricist"), "Writer");
  EXPECT_EQ(tagged.rawMetadata.at("Audio Tag ALBUM_ARTIST"), "Band");
  // A value of white space alone is no value.
  EXPECT_FALSE(tagged.rawMetadata.contains("Audio Tag comment"));

  // A later tag of the same key replaces the raw entry; each distinct value keeps its row.
  const Accumulators repeated =
      analyzed(audioFile(2, {{{"artist", "First"}}, {{"artist", "Second"}}}));
  EXPECT_EQ(repeated.rawMetadata.at("Audio Tag artist"), "Second");
  EXPECT_EQ(rowsOf(repeated.sections, "Audio Tags"),
            (Rows{{"Artist", "First"}, {"Artist", "Second"}}));

  // An encoder's tag alone is raw metadata only.
  const Accumulators encoderOnly = analyzed(audioFile(2, {{{"encoder", "Lavf59.27.100"}}}));
  EXPECT_EQ(rowsOf(encoderOnly.sections, "Audio Tags"), Rows{});
  EXPECT_TRUE(encoderOnly.findings.empty());
  EXPECT_EQ(encoderOnly.rawMetadata.at("Audio Tag encoder"), "Lavf59.27.100");
}

TEST(AudioAnalysis, anUndecodableFileStillGivesItsDurationAndTags) {
  MediaDescription noDecoder = audioFile(61, {{{"title", "Still here"}}});
  noDecoder.audioFormat.reset();
  noDecoder.audioError = "Decoder not found";
  const Accumulators undecoded = analyzed(noDecoder);
  EXPECT_EQ(undecoded.rawMetadata.at("Audio AVAudioFile Error"), "Decoder not found");
  EXPECT_EQ(rowsOf(undecoded.sections, "Audio"), (Rows{{"Duration", "1:01"}}));
  EXPECT_EQ(rowsOf(undecoded.sections, "Audio Tags"), (Rows{{"Title", "Still here"}}));

  // Nothing readable: the error alone, and no section.
  MediaDescription unreadable;
  unreadable.audioError = "Invalid data found when processing input";
  const Accumulators nothing = analyzed(unreadable);
  EXPECT_EQ(nothing.rawMetadata,
            (RawMetadata{{"Audio AVAudioFile Error", "Invalid data found when processing input"}}));
  EXPECT_TRUE(nothing.sections.empty());
  EXPECT_TRUE(nothing.summaryItems.empty());

  // A decoder that stopped on the file says so.
  const Accumulators stopped =
      analyzed(MediaProbe(make_error_code(platform::DecoderError::stopped)));
  EXPECT_EQ(stopped.rawMetadata,
            (RawMetadata{{"Audio AVAudioFile Error", "The decoder stopped on this file."}}));
}

// Real files through the whole inspection, with the real decoder worker.
TEST(AudioAnalysis, realFilesGiveTheRowsFfprobeAgreesWith) {
  const FileInspector inspector(
      std::shared_ptr<platform::DecoderClient>(&test::sharedDecoder(), [](auto*) {}));
  const auto song = inspector.inspect(kMedia / "tagged.mp3");
  ASSERT_TRUE(song);
  // ID3's TSSE frame is the encoder's tag; the stream's own encoder tag comes later.
  EXPECT_EQ(song->rawMetadata.at("Audio Tag encoder"), "Lavc59.37");
  // A 10 MB cover picture costs the worker nothing it cannot afford.
  test::TempDir dir;
  const auto covered = inspector.inspect(
      dir.write("covered.mp3", test::id3Tag({test::coverPicture(10 * 1024 * 1024)}) +
                                   test::fileBytes(kMedia / "tagged.mp3")));
  ASSERT_TRUE(covered);
  EXPECT_EQ(rowsOf(covered->sections, "Audio"), rowsOf(song->sections, "Audio"));
  EXPECT_EQ(covered->rawMetadata.at("Audio Tag comment"), "Cover (front)");

  // Text under an audio name and an empty file: FFmpeg's reason, and no audio section.
  for (const auto& file : {kMedia / "text_named.mp3", dir.write("empty.mp3", "")}) {
    const auto text = inspector.inspect(file);
    ASSERT_TRUE(text);
    EXPECT_EQ(text->rawMetadata.at("Audio AVAudioFile Error"),
              "Invalid data found when processing input");
    EXPECT_EQ(rowsOf(text->sections, "Audio"), Rows{});
  }
}

}  // namespace
}  // namespace lumenscribe
