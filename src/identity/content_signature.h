// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/content_type.h"

namespace lumenscribe {

/// What a file's first bytes say it is, whatever its name claims.
/// Example: {"PNG image", "image"} for any file that starts with the PNG magic.
struct ContentSignature {
  std::string typeName;
  /// "image", "pdf", "archive", "audio", "video" or "text".
  std::string category;

  friend bool operator==(const ContentSignature&, const ContentSignature&) = default;
};

/// The signature of these head bytes (at most the first 512 are looked at); nothing when
/// no known signature matches, and nothing for no bytes at all.
std::optional<ContentSignature> contentSignatureOf(std::span<const std::byte> head);

/// Reads at most 512 bytes from the start of the file, in one read, and judges them.
/// Nothing when the file cannot be opened or read, is empty, or has no known signature.
std::optional<ContentSignature> detectContentSignature(const std::filesystem::path& url);

/// Whether a content type belongs to a signature category ("video" accepts any movie,
/// video or audiovisual type). False for a category this system does not know.
bool contentTypeMatchesCategory(const ContentType& type, std::string_view category);

}  // namespace lumenscribe
