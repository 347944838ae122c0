// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include "analyzers/media_tags.h"
#include "core/accumulators.h"

namespace lumenscribe {

/// The "Video" section of a movie: duration, track counts, the displayed size and
/// orientation, frame rate, bitrates, codec, colour and the first audio track's format;
/// every tag goes to the raw metadata as "Video Tag {key}", and an audio track raises a
/// neutral finding. A file that tells nothing still gets the section, with 0 tracks.
void analyzeVideo(const MediaProbe& media, Accumulators& accumulators);

/// The width and height a picture of `width` by `height` shows at after turning it by
/// `degrees` counterclockwise (the signs as the turn leaves them).
struct DisplayedSize {
  double width = 0;
  double height = 0;
};
DisplayedSize displayedSize(double width, double height, double degrees);

}  // namespace lumenscribe
