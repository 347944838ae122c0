// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "decoder/item_bytes.h"
#include "platform/decoder_protocol.h"

namespace lumenscribe::decoder {

/// The item's image 0, turned upright and scaled down to fit the box, as 8-bit sRGB with
/// alpha; nothing when no loader we allow reads it. Damaged images give what decodes.
std::optional<platform::decoder::RgbaImage> renderPicturePreview(
    const ItemBytes& item, const platform::decoder::PreviewBox& box);

}  // namespace lumenscribe::decoder
