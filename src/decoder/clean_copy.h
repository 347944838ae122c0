// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

#include "decoder/item_bytes.h"
#include "decoder/output_sink.h"
#include "platform/decoder_protocol.h"

namespace lumenscribe::decoder {

using platform::decoder::CleanCopyOutcome;
using platform::decoder::CleanCopyRequest;
using platform::decoder::CleanCopySource;
using platform::decoder::ImageFormat;

/// The format of the loader that takes the item (HEIF by its compression: HEVC is HEIC, AV1
/// is AVIF) and its image count, from the header alone; `other` for a picture whose format
/// this layer cannot write or whose encoder this libvips lacks. Nothing when no loader we
/// allow takes the item or its header does not load.
std::optional<CleanCopySource> readCleanCopySource(const ItemBytes& item);

/// The format a libvips loader's nickname ("jpegload_source") stands for.
ImageFormat formatOfLoader(std::string_view loader);

/// Writes the clean copy `request` asks for into `out` and flushes it. Refuses (without a
/// byte written) an item that is not exactly one picture in a format this layer writes.
CleanCopyOutcome writeCleanCopy(const ItemBytes& item, const CleanCopyRequest& request,
                                OutputSink& out);

}  // namespace lumenscribe::decoder
