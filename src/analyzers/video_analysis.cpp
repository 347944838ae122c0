// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/video_analysis.h"

#include <cmath>
#include <cstdio>
#include <numbers>

#include "core/metadata_value.h"

namespace lumenscribe {

namespace {

using platform::decoder::AudioTrackFacts;
using platform::decoder::MediaDescription;
using platform::decoder::VideoTrackFacts;

struct Rows {
  std::vector<InsightRow>& rows;
  Accumulators& accumulators;

  void add(const char* label, const char* rawKey, const std::string& value) {
    rows.emplace_back(label, value);
    accumulators.setRaw(rawKey, value);
  }
};

// Cosine and sine of a turn, exact for quarter turns, so that a 90-degree matrix gives
// exactly swapped sides.
std::pair<double, double> cosineAndSine(double degrees) {
  const double quarters = degrees / 90;
  if (quarters == std::round(quarters)) {
    constexpr std::pair<double, double> kQuarterTurns[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
    const auto index = static_cast<int>(std::fmod(std::fmod(quarters, 4) + 4, 4));
    return kQuarterTurns[index];
  }
  const double radians = degrees * std::numbers::pi / 180;
  return {std::cos(radians), std::sin(radians)};
}

void addVideoTrack(const VideoTrackFacts& track, Rows& out) {
  const DisplayedSize size =
      displayedSize(track.naturalWidth, track.naturalHeight, track.rotationDegrees);
  if (size.width != 0 && size.height != 0 && !std::isnan(size.width) && !std::isnan(size.height)) {
    const double width = std::abs(size.width);
    const double height = std::abs(size.height);
    const std::string wholeWidth = std::to_string(std::llround(width));
    const std::string wholeHeight = std::to_string(std::llround(height));
    out.rows.emplace_back("Dimensions", wholeWidth + " \u00D7 " + wholeHeight + " pixels");
    out.accumulators.setRaw("Video Width", wholeWidth);
    out.accumulators.setRaw("Video Height", wholeHeight);
    out.add("Orientation", "Video Orientation",
            width > height   ? "Landscape"
            : height > width ? "Portrait"
                             : "Square");
  }
  if (track.nominalFrameRate > 0) {
    out.add("Frame Rate", "Video Frame Rate",
            compactNumberText(static_cast<double>(track.nominalFrameRate)) + " fps");
  }
  if (track.estimatedDataRate > 0) {
    char text[64];
    std::snprintf(text, sizeof text, "%.2f Mbps",
                  static_cast<double>(track.estimatedDataRate / 1'000'000.0f));
    out.add("Video Bitrate", "Video Estimated Bitrate", text);
  }
  if (track.codec) out.add("Codec", "Video Codec", fourCharCodeText(*track.codec));
  if (track.colorPrimaries) {
    out.add("Color Primaries", "Video Color Primaries", *track.colorPrimaries);
  }
  if (track.transferFunction) {
    out.add("Transfer Function", "Video Transfer Function", *track.transferFunction);
  }
  if (track.ycbcrMatrix) out.add("YCbCr Matrix", "Video YCbCr Matrix", *track.ycbcrMatrix);
}

void addAudioTrack(const AudioTrackFacts& track, Rows& out) {
  if (track.estimatedDataRate > 0) {
    const long long kbps = std::llround(track.estimatedDataRate / 1000.0f);
    out.add("Audio Bitrate", "Video Audio Bitrate", std::to_string(kbps) + " kbps");
  }
  if (track.sampleRate > 0) {
    out.add("Audio Sample Rate", "Video Audio Sample Rate",
            compactNumberText(track.sampleRate) + " Hz");
  }
  if (track.channelCount != 0) {
    out.add("Audio Channels", "Video Audio Channels", std::to_string(track.channelCount));
  }
}

}  // namespace

DisplayedSize displayedSize(double width, double height, double degrees) {
  // A size goes through the turn's matrix [cos sin; -sin cos] as a vector does.
  const auto [cosine, sine] = cosineAndSine(degrees);
  return {cosine * width - sine * height, sine * width + cosine * height};
}

void analyzeVideo(const MediaProbe& media, Accumulators& accumulators) {
  // Nothing readable is a movie without tracks.
  const MediaDescription nothing;
  const MediaDescription& movie = media ? *media : nothing;
  std::vector<InsightRow> rows;
  Rows out{rows, accumulators};

  if (movie.duration && std::isfinite(*movie.duration) && *movie.duration > 0) {
    out.add("Duration", "Video Duration", durationText(*movie.duration));
  }
  out.add("Video Tracks", "Video Track Count", std::to_string(movie.videoTrackCount));
  out.add("Audio Tracks", "Video Audio Track Count", std::to_string(movie.audioTrackCount));
  if (movie.firstVideoTrack) addVideoTrack(*movie.firstVideoTrack, out);
  if (movie.firstAudioTrack) addAudioTrack(*movie.firstAudioTrack, out);

  for (const MediaTagText& tag : mediaTagTexts(media)) {
    accumulators.setRaw("Video Tag " + tag.key, tag.value);
  }

  accumulators.sections.emplace_back("Video", "film.fill", std::move(rows));
  accumulators.summaryItems.emplace_back("Video");
  if (movie.audioTrackCount > 0) {
    accumulators.findings.emplace_back(
        "An audio track is present",
        "This video contains " + std::to_string(movie.audioTrackCount) +
            " audio track(s). Lumenscribe reports their presence without playing the media.",
        PrivacyLevel::neutral);
  }
}

}  // namespace lumenscribe
