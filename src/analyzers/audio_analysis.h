// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "analyzers/media_tags.h"
#include "core/accumulators.h"

namespace lumenscribe {

/// The stream properties of an audio file ("Audio": sample rate, channels, duration and the
/// decoded samples' bit depth and format) and its descriptive tags ("Audio Tags", with a
/// finding); every tag also lands in the raw metadata as "Audio Tag {key}". When the audio
/// cannot be decoded, the raw "Audio AVAudioFile Error" says why, and the container's
/// duration and tags are still reported.
void analyzeAudio(const MediaProbe& media, Accumulators& accumulators);

/// The row label of a tag key, lower-cased ("title" -> "Title", "album_artist" -> "Artist");
/// empty when the key names nothing the "Audio Tags" section shows.
std::string_view audioTagLabel(std::string_view lowerCasedKey);

}  // namespace lumenscribe
