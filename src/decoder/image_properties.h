// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "decoder/item_bytes.h"
#include "platform/decoder_protocol.h"

namespace lumenscribe::decoder {

using platform::decoder::ImageProperties;

/// The property map of image 0, as the image pass reads it: the image count and pixel facts
/// ("PixelWidth", "PixelHeight", "Depth", "ColorModel", "ProfileName", "Orientation",
/// "DPIWidth", "DPIHeight") from libvips, which reads the header only and decodes no pixel,
/// and the dictionaries of Exiv2 ("{Exif}", "{TIFF}", "{GPS}", "{IPTC}", "{XMP}",
/// "{MakerNote}") read over a read-only mapping of the item, with "{PNG}" text chunks and
/// "{GIF}" timing from libvips. Nothing when neither an image loader we allow nor Exiv2 takes
/// the item for a picture (Exiv2 alone reads camera raw files such as CR2, NEF and DNG).
std::optional<ImageProperties> readImageProperties(const ItemBytes& item);

}  // namespace lumenscribe::decoder
