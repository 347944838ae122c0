// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/audio_analysis.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/metadata_value.h"
#include "platform/unicode_text.h"

namespace lumenscribe {

namespace {

using platform::decoder::AudioProcessingFormat;

// The first key fragment found decides, so an album artist's key reads as an artist.
struct TagLabel {
  std::string_view fragment;
  std::string_view label;
};
constexpr std::array kTagLabels = {
    TagLabel{"title", "Title"},         TagLabel{"artist", "Artist"},
    TagLabel{"author", "Artist"},       TagLabel{"album", "Album"},
    TagLabel{"genre", "Genre"},         TagLabel{"year", "Date"},
    TagLabel{"date", "Date"},           TagLabel{"comment", "Comment"},
    TagLabel{"description", "Comment"}, TagLabel{"composer", "Composer"},
    TagLabel{"copyright", "Copyright"},
};

void addRow(std::vector<InsightRow>& rows, Accumulators& accumulators, const char* label,
            const char* rawKey, const std::string& value) {
  rows.emplace_back(label, value);
  accumulators.setRaw(rawKey, value);
}

// The decoded samples: what the first reader of the file tells.
void addProcessingFormat(const AudioProcessingFormat& format, std::vector<InsightRow>& rows,
                         Accumulators& accumulators) {
  addRow(rows, accumulators, "Sample Rate", "Audio Sample Rate",
         compactNumberText(format.sampleRate) + " Hz");
  addRow(rows, accumulators, "Channels", "Audio Channels", std::to_string(format.channelCount));
  // A file that does not say how long it is gives the container's duration below instead.
  if (format.sampleRate > 0 && format.frameCount >= 0) {
    addRow(rows, accumulators, "Duration", "Audio Duration",
           durationText(static_cast<double>(format.frameCount) / format.sampleRate));
  }
  if (format.bitsPerChannel != 0) {
    addRow(rows, accumulators, "Bit Depth", "Audio Bit Depth",
           std::to_string(format.bitsPerChannel) + "-bit");
  }
  if (format.formatCode != 0) {
    addRow(rows, accumulators, "Format", "Audio Format", fourCharCodeText(format.formatCode));
  }
}

bool hasRow(const std::vector<InsightRow>& rows, std::string_view label) {
  return std::any_of(rows.begin(), rows.end(),
                     [label](const InsightRow& row) { return row.label == label; });
}

}  // namespace

std::string_view audioTagLabel(std::string_view lowerCasedKey) {
  for (const TagLabel& tag : kTagLabels) {
    if (lowerCasedKey.find(tag.fragment) != std::string_view::npos) return tag.label;
  }
  return {};
}

void analyzeAudio(const MediaProbe& media, Accumulators& accumulators) {
  std::vector<InsightRow> audioRows;
  std::vector<InsightRow> tagRows;

  if (!media) {
    accumulators.setRaw("Audio AVAudioFile Error", media.error().message());
  } else if (!media->audioFormat) {
    accumulators.setRaw("Audio AVAudioFile Error", media->audioError);
  } else {
    addProcessingFormat(*media->audioFormat, audioRows, accumulators);
  }

  if (media && media->duration && std::isfinite(*media->duration) && *media->duration > 0 &&
      !hasRow(audioRows, "Duration")) {
    addRow(audioRows, accumulators, "Duration", "Audio Duration", durationText(*media->duration));
  }

  for (const MediaTagText& tag : mediaTagTexts(media)) {
    accumulators.setRaw("Audio Tag " + tag.key, tag.value);
    const std::string_view label = audioTagLabel(platform::lowerCased(tag.key));
    if (!label.empty()) appendRowIfNew(tagRows, std::string(label), tag.value);
  }

  if (!audioRows.empty()) {
    accumulators.sections.emplace_back("Audio", "waveform", std::move(audioRows));
    accumulators.summaryItems.emplace_back("Audio");
  }
  if (!tagRows.empty()) {
    accumulators.sections.emplace_back("Audio Tags", "music.note.list", std::move(tagRows));
    accumulators.summaryItems.emplace_back("Audio Tags");
    accumulators.findings.emplace_back(
        "Descriptive audio tags are embedded",
        "This audio file contains tags such as title, artist, album, comments, copyright, or "
        "related descriptive information.",
        PrivacyLevel::notice);
  }
}

}  // namespace lumenscribe
