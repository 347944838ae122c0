// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The media probe as the worker runs it, on files ffmpeg made, checked against what ffprobe
// said of the same files (tests/data/media/ffprobe.txt).
#include "decoder/media_description.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <map>

#include "core/path_text.h"
#include "decoder/decoder_test_support.h"
#include "media_fixtures.h"

namespace lumenscribe::decoder {
namespace {

using platform::decoder::MediaDescription;
using platform::decoder::MediaTag;
using Fields = std::map<std::string, std::string>;
using namespace std::string_literals;

const std::filesystem::path& kMedia = lumenscribe::test::kMediaFixtures;

// What ffprobe -show_format -show_streams printed for one file.
struct Probe {
  std::vector<Fields> streams;
  Fields format;
};

std::map<std::string, Probe> readFfprobeOutput() {
  std::ifstream in(kMedia / "ffprobe.txt", std::ios::binary);
  std::map<std::string, Probe> probes;
  Probe* probe = nullptr;
  Fields* fields = nullptr;
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with("== ")) {
      probe = &probes[line.substr(3)];
    } else if (probe != nullptr && line == "[STREAM]") {
      fields = &probe->streams.emplace_back();
    } else if (probe != nullptr && line == "[FORMAT]") {
      fields = &probe->format;
    } else if (line == "[/STREAM]" || line == "[/FORMAT]") {
      fields = nullptr;
    } else if (fields != nullptr && line.find('=') != std::string::npos) {
      const auto equals = line.find('=');
      fields->emplace(line.substr(0, equals), line.substr(equals + 1));
    }
  }
  return probes;
}

// The TAG: fields of one ffprobe section, as the probe's tags would read.
Fields tagsOf(const Fields& fields) {
  Fields tags;
  for (const auto& [key, value] : fields) {
    if (key.starts_with("TAG:")) tags.emplace(validUtf8(key.substr(4)), validUtf8(value));
  }
  return tags;
}

Fields tagsOf(const std::vector<MediaTag>& group) {
  Fields tags;
  for (const auto& tag : group) tags.emplace(tag.key, tag.value);
  return tags;
}

double number(const Fields& fields, const std::string& key) {
  const auto found = fields.find(key);
  if (found == fields.end() || found->second == "N/A") return 0;
  const auto slash = found->second.find('/');
  if (slash != std::string::npos) {
    return std::stod(found->second.substr(0, slash)) / std::stod(found->second.substr(slash + 1));
  }
  return std::stod(found->second);
}

std::optional<std::string> colour(const Fields& fields, const std::string& key) {
  const auto found = fields.find(key);
  if (found == fields.end() || found->second == "unknown") return std::nullopt;
  return found->second;
}

std::string fourCharText(std::uint32_t code) {
  return {static_cast<char>(code >> 24), static_cast<char>(code >> 16 & 0xFF),
          static_cast<char>(code >> 8 & 0xFF), static_cast<char>(code & 0xFF)};
}

MediaDescription describeFixture(const char* name) {
  const test::OpenFixture file(kMedia / name);
  return describeMedia(file.bytes());
}

// Bytes in a memory file, as the worker gets an item: a descriptor and a size.
class MemoryItem {
 public:
  explicit MemoryItem(std::string_view bytes) : fd_(::memfd_create("item", MFD_CLOEXEC)) {
    if (!fd_ || ::write(fd_.get(), bytes.data(), bytes.size()) != std::ssize(bytes)) std::abort();
    size_ = std::ssize(bytes);
  }
  ItemBytes bytes(std::int64_t size = -1) const { return {fd_.get(), size < 0 ? size_ : size}; }

 private:
  platform::UniqueFd fd_;
  std::int64_t size_ = 0;
};

TEST(MediaDescription, agreesWithFfprobeOnEveryFixture) {
  const auto probes = readFfprobeOutput();
  int compared = 0;
  for (const auto& [name, probe] : probes) {
    if (probe.format.empty()) continue;  // ffprobe could not open it either
    SCOPED_TRACE(name);
    const MediaDescription media = describeFixture(name.c_str());
    ASSERT_TRUE(media.opened);
    ASSERT_TRUE(media.duration);
    EXPECT_NEAR(*media.duration, number(probe.format, "duration"), 1e-6);

    // The container's tags first, then each stream's.
    ASSERT_EQ(media.metadata.size(), probe.streams.size() + 1);
    EXPECT_EQ(tagsOf(media.metadata[0]), tagsOf(probe.format));
    int videoTracks = 0;
    int audioTracks = 0;
    for (std::size_t i = 0; i < probe.streams.size(); ++i) {
      const Fields& stream = probe.streams[i];
      EXPECT_EQ(tagsOf(media.metadata[i + 1]), tagsOf(stream));
      if (stream.at("codec_type") == "video" && ++videoTracks == 1) {
        const auto& track = media.firstVideoTrack.value();
        EXPECT_EQ(track.naturalWidth, number(stream, "width"));
        EXPECT_EQ(track.naturalHeight, number(stream, "height"));
        EXPECT_EQ(track.rotationDegrees, number(stream, "rotation"));
        EXPECT_FLOAT_EQ(track.nominalFrameRate, number(stream, "avg_frame_rate"));
        EXPECT_FLOAT_EQ(track.estimatedDataRate, number(stream, "bit_rate"));
        // A tag of four zero bytes is no tag: the conventional one stands in.
        const std::string tag = stream.at("codec_tag_string");
        if (!tag.starts_with("[0]")) {
          EXPECT_EQ(fourCharText(track.codec.value()), tag);
        }
        EXPECT_EQ(track.colorPrimaries, colour(stream, "color_primaries"));
        EXPECT_EQ(track.transferFunction, colour(stream, "color_transfer"));
        EXPECT_EQ(track.ycbcrMatrix, colour(stream, "color_space"));
      }
      if (stream.at("codec_type") == "audio" && ++audioTracks == 1) {
        const auto& track = media.firstAudioTrack.value();
        EXPECT_EQ(track.sampleRate, number(stream, "sample_rate"));
        EXPECT_EQ(track.channelCount, number(stream, "channels"));
        EXPECT_FLOAT_EQ(track.estimatedDataRate, number(stream, "bit_rate"));
      }
    }
    EXPECT_EQ(media.videoTrackCount, videoTracks);
    EXPECT_EQ(media.audioTrackCount, audioTracks);
    ++compared;
  }
  EXPECT_EQ(compared, 10);
}

TEST(MediaDescription, tellsTheSamplesTheAudioDecoderDelivers) {
  const struct {
    const char* name;
    double sampleRate;
    std::uint32_t channels;
    std::uint32_t bits;
    std::int64_t frames;
  } cases[] = {
      // Stored as FLAC, delivered as the 16-bit samples it compressed.
      {"silence_185s.wav", 44100, 2, 16, 185 * 44100},
      {"tone_8bit_mono.wav", 22050, 1, 8, 22050},
      // The encoder's delay counts: the frames come from the track's duration, not a decode.
      {"tagged.mp3", 44100, 2, 32, 89856},
      {"tagged.m4a", 44100, 2, 32, 44100},
      {"encoder_only.flac", 48000, 1, 16, 48000},
      {"latin1_tags.mka", 48000, 1, 32, 48384},
      {"portrait.mp4", 48000, 2, 32, 48000},
      {"clip.mov", 22050, 2, 16, 8820},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    const MediaDescription media = describeFixture(test.name);
    ASSERT_TRUE(media.audioFormat) << media.audioError;
    EXPECT_EQ(media.audioError, "");
    EXPECT_EQ(media.audioFormat->sampleRate, test.sampleRate);
    EXPECT_EQ(media.audioFormat->channelCount, test.channels);
    EXPECT_EQ(media.audioFormat->bitsPerChannel, test.bits);
    EXPECT_EQ(fourCharText(media.audioFormat->formatCode), "lpcm");
    EXPECT_EQ(media.audioFormat->frameCount, test.frames);
  }
  // A movie without sound has no audio to decode.
  const MediaDescription silent = describeFixture("silent.mkv");
  EXPECT_TRUE(silent.opened);
  EXPECT_FALSE(silent.audioFormat);
  EXPECT_EQ(silent.audioError, "Stream not found");
  EXPECT_EQ(fourCharText(silent.firstVideoTrack.value().codec.value()), "vp09");
}

TEST(MediaDescription, whatNoDemuxerTakesGivesFfmpegsReason) {
  const std::string invalid = "Invalid data found when processing input";
  for (const char* name : {"text_named.mp3", "text_named.mp4", "moov_missing.mp4"}) {
    SCOPED_TRACE(name);
    const MediaDescription media = describeFixture(name);
    MediaDescription nothing;
    nothing.audioError = invalid;
    EXPECT_EQ(media, nothing);
  }
  EXPECT_EQ(describeMedia(ItemBytes{}).audioError, invalid);

  // Only the item's own bytes count: this file's movie header lies in its last quarter,
  // past the size it is opened with here.
  const std::string film = lumenscribe::test::fileBytes(kMedia / "film_23976.mp4");
  const MemoryItem item(film);
  EXPECT_TRUE(describeMedia(item.bytes()).opened);
  EXPECT_FALSE(describeMedia(item.bytes(std::ssize(film) * 3 / 4)).opened);
}

TEST(MediaDescription, aHugeCoverPictureAndAwkwardTagsStayWithinBounds) {
  std::string longValue;
  while (longValue.size() < 100 * 1024) longValue += "\u20AC";  // three bytes each
  const std::string tag = lumenscribe::test::id3Tag({
      lumenscribe::test::coverPicture(10 * 1024 * 1024),
      {"TXXX", "\x03notes\0"s + longValue},
      {"TXXX", "\x03raw\0Caf\xe9 au lait"s},
  });
  const MemoryItem item(tag + lumenscribe::test::fileBytes(kMedia / "tagged.mp3"));
  const MediaDescription media = describeMedia(item.bytes());
  ASSERT_TRUE(media.opened);
  // The picture is cover art, not a video track.
  EXPECT_EQ(media.videoTrackCount, 0);
  EXPECT_EQ(media.audioTrackCount, 1);
  ASSERT_TRUE(media.audioFormat);
  const Fields container = tagsOf(media.metadata.at(0));
  EXPECT_EQ(container.at("title"), "  Song  ");
  // Cut where a character ends, within the limit.
  const std::string& notes = container.at("notes");
  EXPECT_EQ(notes.size(), platform::decoder::kMaxMediaTagValue / 3 * 3);
  EXPECT_EQ(notes, longValue.substr(0, notes.size()));
  EXPECT_EQ(container.at("raw"), "Caf\uFFFD au lait");
  EXPECT_EQ(tagsOf(media.metadata.at(2)).at("comment"), "Cover (front)");
}

TEST(MediaDescription, everyDescriptionCrossesTheWireUnchanged) {
  for (const auto& entry : std::filesystem::directory_iterator(kMedia)) {
    SCOPED_TRACE(entry.path().filename().string());
    const test::OpenFixture file(entry.path());
    const MediaDescription media = describeMedia(file.bytes());
    platform::decoder::Writer out;
    write(out, media);
    platform::decoder::Reader in(out.data());
    EXPECT_EQ(platform::decoder::readMediaDescription(in), media);
    EXPECT_TRUE(in.finished());
  }
}

}  // namespace
}  // namespace lumenscribe::decoder
