// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace lumenscribe::decoder {

/// The PNG chunks a clean copy keeps: the critical ones and those that say how to show the
/// pixels. Every other ancillary chunk goes (text, time, EXIF, animation, private chunks).
bool isKeptPngChunk(std::span<const std::byte, 4> type);

/// A TIFF block (big-endian) holding IFD0 with one entry, the orientation: what an eXIf
/// chunk or an EXIF segment carries when nothing else is left of the EXIF.
std::vector<std::byte> orientationExifBlock(std::uint16_t orientation);

/// `png` with only its kept chunks, in their order and with their CRCs as they were (not
/// recomputed), cut after IEND; when `orientation` is given (1 to 8), an eXIf chunk holding
/// it goes before the first IDAT. Nothing when the bytes are not a PNG this filter can vouch
/// for: no signature, IHDR not first, a chunk that runs past the end or has a length over
/// 2^31 - 1 or a type that is not four letters, a critical chunk it does not know, no IDAT
/// before IEND, or no IEND.
std::optional<std::vector<std::byte>> filterPngChunks(std::span<const std::byte> png,
                                                      std::optional<std::uint16_t> orientation);

}  // namespace lumenscribe::decoder
