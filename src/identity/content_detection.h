// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>

#include "identity/content_signature.h"
#include "platform/opened_item.h"

namespace lumenscribe {

/// The bytes detection looks at, and what the file system says about running the file.
struct ContentBytes {
  std::span<const std::byte> head;
  /// The file's size as opened.
  std::int64_t size = 0;
  /// An execute permission bit is set: a script with a shebang is then a program.
  bool executable = false;
  /// The file's last bytes (at most kTailSize, ending at `size`), asked for only when the
  /// head leaves the question open; nothing when they cannot be read.
  std::function<std::optional<std::span<const std::byte>>()> tail;
};

/// As much of a file's end as a ZIP's end-of-central-directory record (with the longest
/// comment) and a PDF's "%%EOF" can occupy.
inline constexpr std::size_t kTailSize = 22 + 65535;

/// What the content is: the built-in table first; then, when it finds nothing or only
/// printable text, the MIME database's magic rules on the head (named with the type's own
/// description, filed by its ancestry); then, when still nothing more than text is known,
/// a ZIP found from its end-of-central-directory record (a self-extractor, bytes prepended).
/// A PDF header after the first byte counts only when the file also ends like a PDF.
std::optional<ContentSignature> detectContent(const ContentBytes& bytes);

/// The same for an opened item: its head bytes, its descriptor's permissions, and its tail
/// read once with one bounded pread when it is needed. Nothing for an empty or unreadable
/// file.
std::optional<ContentSignature> detectContentSignature(const platform::OpenedItem& item);

/// Whether the bytes end with a ZIP end-of-central-directory record whose comment reaches
/// exactly the end of the file and whose directory lies before it.
bool endsWithZipDirectory(std::span<const std::byte> tail, std::int64_t fileSize);

}  // namespace lumenscribe
