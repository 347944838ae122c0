// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include "decoder/item_bytes.h"
#include "platform/decoder_protocol.h"

namespace lumenscribe::decoder {

using platform::decoder::CompressedFormat;
using platform::decoder::StreamTestFacts;

/// Decompresses the whole item as a `format` stream with that format's own library (zlib,
/// libbz2, liblzma, libzstd), checking every checksum the format carries and dropping the
/// output as it comes: nothing is written and memory stays bounded (xz and zstd streams
/// that ask for a larger window than the test allows are refused, not decoded). Several
/// members in a row (pigz, pbzip2) are one stream; bytes after the last member that start
/// no new one are reported as trailing data. Stops with `outOfTime` at `deadline`.
StreamTestFacts testCompressedStream(const ItemBytes& item, CompressedFormat format,
                                     std::chrono::steady_clock::time_point deadline);

}  // namespace lumenscribe::decoder
