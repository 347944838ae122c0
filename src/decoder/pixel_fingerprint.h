// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "decoder/item_bytes.h"
#include "platform/decoder_protocol.h"

namespace lumenscribe::decoder {

using platform::decoder::PixelFingerprint;

/// SHA-256 of image 0 decoded the way the comparison draws it: colour-managed to 8-bit sRGB
/// (through the embedded ICC profile when there is one), an opaque alpha added where the
/// image has none, each colour premultiplied by its alpha, and the pixels hashed as R, G, B,
/// A bytes, rows top to bottom. The orientation is not applied. Rows are hashed as they are
/// decoded, so memory stays at a few strips however large the image. Nothing when no loader
/// we allow takes the item or image 0 does not decode.
std::optional<PixelFingerprint> computePixelFingerprint(const ItemBytes& item);

/// One row of 8-bit RGBA pixels with every colour premultiplied by its alpha, rounded to the
/// nearest value: (c × a + 127) / 255.
void premultiplyRow(std::span<std::uint8_t> rgba);

}  // namespace lumenscribe::decoder
