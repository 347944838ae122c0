// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "decoder/item_bytes.h"
#include "platform/decoder_protocol.h"

namespace lumenscribe::decoder {

using platform::decoder::ImageFormat;

/// The item with its metadata removed and its compressed image data untouched; nothing
/// when no such copy can be made of it (its format, or a file the rewrite refuses).
///
/// JPEG and WebP: Exiv2 rewrites the container without EXIF (and its thumbnail), IPTC, XMP
/// and comments, keeping the ICC profile and writing the orientation back when the source
/// had one; a JPEG then loses the segments Exiv2 leaves (filterJpegSegments). PNG: the chunk
/// filter (filterPngChunks), with the orientation in an eXIf chunk. TIFF, GIF, HEIC and AVIF
/// are refused: Exiv2 cannot rewrite the last three, and leaves XMP in a TIFF.
std::optional<std::vector<std::byte>> pixelSafeCopy(const ItemBytes& item, ImageFormat format);

/// The orientation (1 to 8) Exiv2 reads from the file, wherever the format keeps it.
std::optional<std::uint16_t> sourceOrientation(std::span<const char> file);

}  // namespace lumenscribe::decoder
