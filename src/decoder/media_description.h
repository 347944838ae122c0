// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include "decoder/item_bytes.h"
#include "platform/decoder_protocol.h"

namespace lumenscribe::decoder {

/// Probes an audio or video file once with FFmpeg (demuxer and stream info, as ffprobe does;
/// no frame is decoded beyond what the probe needs) and opens the first audio track's decoder
/// to learn the samples it delivers. A file that no demuxer takes gives `opened` false and
/// FFmpeg's text of why.
///
///     const auto media = describeMedia(item);
///     if (media.audioFormat) media.audioFormat->sampleRate;  // 44100
platform::decoder::MediaDescription describeMedia(const ItemBytes& item);

}  // namespace lumenscribe::decoder
