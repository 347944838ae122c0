// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include "decoder/item_bytes.h"
#include "platform/decoder_protocol.h"

namespace lumenscribe::decoder {

using platform::decoder::MediaPacketFacts;

/// Reads every packet of an audio or video file with FFmpeg's demuxer, decoding nothing,
/// with checksum verification on where the container has checksums (Ogg pages, Matroska
/// CRC elements, MPEG-TS tables). Every error the demuxer reports on the way, opening
/// included, is counted: read failures and cut-off data apart from checksum failures.
/// Stops at `deadline` with `complete` false.
MediaPacketFacts demuxEveryPacket(const ItemBytes& item,
                                  std::chrono::steady_clock::time_point deadline);

}  // namespace lumenscribe::decoder
