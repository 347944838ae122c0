// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace lumenscribe::decoder {

/// What a metadata rewrite leaves in a JPEG that may still say something about its maker,
/// taken out: application segments other than JFIF (its thumbnail dropped), the first EXIF
/// segment, ICC profile chunks and Adobe's colour transform (Photoshop resources, multi-picture
/// indexes, FlashPix streams, extended XMP, makers' private segments), comments, and whatever
/// follows the end-of-image marker (the appended previews and motion clips of some phones and
/// cameras). Every other segment and the entropy-coded data are copied byte for byte. Nothing
/// when the bytes are not a JPEG this filter can walk: no start-of-image marker, a segment
/// that runs past the end, or the end of the image before any scan.
std::optional<std::vector<std::byte>> filterJpegSegments(std::span<const std::byte> jpeg);

}  // namespace lumenscribe::decoder
