// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace lumenscribe::platform {

/// How far image 0 of a file could be decoded (libvips).
enum class ImageDecodeStatus {
  cannotOpen,        // the file cannot be opened or read at all
  unknownImageType,  // no loader takes it, but the bytes are an image format we cannot decode
  noImage,           // no loader takes it, or it holds no image
  headerTruncated,   // the header does not load because the data ends
  headerInvalid,     // the header does not load for any other reason
  complete,          // a strict decode of every pixel succeeded
  incomplete,        // only a lenient decode succeeded, and the data ended early
  invalidData,       // only a lenient decode succeeded, past damaged data
  decodeFailed,      // the header loads, but not even a lenient decode gets through
};

/// Decodes image 0 of the file, every pixel, without keeping the pixels: strictly first
/// (any warning fails it) and, only when that fails, leniently to tell damage apart from
/// an undecodable file. Loaders for formats that are not everyday images (and those that
/// libvips itself marks untrusted) are never used. Safe to call from any thread; calls are
/// serialised, because libvips reports errors and warnings process-wide.
ImageDecodeStatus decodeImageStatus(const std::filesystem::path& path);

/// Prepares libvips once for the whole process: untrusted loaders blocked, the operation
/// cache off, one worker thread (so damage is found the same way every time) and its log
/// kept off stderr. Every adapter that uses libvips calls this first; false when libvips
/// cannot start.
bool initialiseVips();

}  // namespace lumenscribe::platform
