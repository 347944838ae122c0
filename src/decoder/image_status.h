// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "decoder/item_bytes.h"
#include "platform/decoder_protocol.h"

namespace lumenscribe::decoder {

using platform::decoder::ImageDecodeStatus;

/// Prepares libvips once for the whole process: untrusted loaders blocked, the operation
/// cache off, one worker thread (so damage is found the same way every time) and its log
/// kept off stderr. False when libvips cannot start.
bool initialiseVips();

/// The first loader, by libvips' own priority, that takes the source's bytes and is not
/// blocked; nothing when none does. Leaves the source rewound.
const char* unblockedLoaderFor(VipsSource* source);

/// An item opened by its unblocked loader for sequential access, and that loader's name.
struct SequentialImage {
  ImagePtr image;
  const char* loader = nullptr;
};

/// Reads the item's header with its unblocked loader; with sequential access no pixel is
/// decoded until one is asked for. Nothing, with libvips' error cleared, when no loader
/// takes the bytes or the header does not read.
std::optional<SequentialImage> openSequentially(const ItemBytes& item);

/// Decodes image 0 of the item, every pixel, without keeping the pixels: strictly first
/// (any warning fails it) and, only when that fails, leniently to tell damage apart from
/// an undecodable file. Loaders for formats that are not everyday images (and those that
/// libvips itself marks untrusted) are never used.
ImageDecodeStatus decodeImageStatus(const ItemBytes& item);

}  // namespace lumenscribe::decoder
