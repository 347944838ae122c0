// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include "decoder/item_bytes.h"
#include "decoder/output_sink.h"
#include "platform/decoder_protocol.h"

namespace lumenscribe::decoder {

using platform::decoder::CleanCopyStatus;
using platform::decoder::ImageFormat;

/// Decodes image 0 with libvips and encodes it again in `format`, at `quality` (1 to 100;
/// 0: the encoder's default) where the encoder has one, into `out`. Nothing of the source's
/// metadata goes with it but the orientation and the ICC profile (its colours): libvips'
/// `strip` would drop the orientation too, and `webpsave` ignores it, so every other field
/// is removed from the decoded image instead. Answers `undecodable` when image 0 does not
/// decode, `unwritable` when there is no encoder for the format, `encodeFailed` when
/// encoding or sending fails, `written` otherwise. `out` is not flushed.
CleanCopyStatus writeStandardCopy(const ItemBytes& item, ImageFormat format, int quality,
                                  OutputSink& out);

/// The fields a standard copy keeps: how to show the pixels, nothing about their maker.
bool isKeptImageField(std::string_view name);

}  // namespace lumenscribe::decoder
