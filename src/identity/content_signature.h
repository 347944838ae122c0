// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/content_type.h"

namespace lumenscribe {

/// What a file's first bytes say it is, whatever its name claims.
/// Example: {"PNG image", "image", "image/png"} for any file that starts with the PNG magic.
struct ContentSignature {
  std::string typeName;
  /// "image", "pdf", "archive", "audio", "video", "text", "executable", "compressed", or
  /// "other" for a known format in none of these.
  std::string category;
  /// The MIME type the bytes prove ("image/png"); empty when they prove only a family: an
  /// ID3 tag leads MP3 and FLAC audio alike, a generic ISO brand any MPEG-4 media.
  std::string mimeType;
  /// Audio names fit as well: ISO media and other containers hold sound or film alike.
  bool alsoAudio = false;

  friend bool operator==(const ContentSignature&, const ContentSignature&) = default;
};

/// The signature that the built-in table finds in these head bytes (at most the first 512
/// are looked at); nothing when no entry matches, and nothing for no bytes at all. A printable
/// head gives "Plain text", which only says that the bytes are text.
std::optional<ContentSignature> contentSignatureOf(std::span<const std::byte> head);

/// Whether a content type belongs to a signature category ("video" accepts any movie,
/// video or audiovisual type). False for a category this system does not know.
bool contentTypeMatchesCategory(const ContentType& type, std::string_view category);

/// Whether the type is a program: an ELF, PE or Mach-O binary, or a script (which the
/// database files under application/x-executable too).
bool isProgramType(const ContentType& type);

/// Whether the type is a single compressed stream: gzip, bzip2, xz, zstd and their kin.
bool isCompressedStreamType(const ContentType& type);

}  // namespace lumenscribe
