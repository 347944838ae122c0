// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/content_type.h"

namespace lumenscribe::platform {

/// The content type of a regular file as a Linux desktop presents it: from the name when
/// it matches a glob, from `head` (the file's first bytes; no bytes for an empty file) only
/// when it does not. "application/octet-stream" counts as no type.
std::optional<ContentType> contentTypeForFile(std::string_view fileName,
                                              std::span<const std::byte> head);

/// The content type from a file name alone, for a file whose content cannot be read.
std::optional<ContentType> contentTypeForFileName(std::string_view fileName);

/// The type of a directory ("inode/directory", "folder").
ContentType directoryContentType();

/// The type a name with this extension suggests ("pdf" gives application/pdf); nothing
/// when the database knows no type for it.
std::optional<ContentType> contentTypeForExtension(std::string_view extension);

/// Every type whose glob matches the name (several for .ogg or .otf), most specific first;
/// none when no glob matches.
std::vector<ContentType> contentTypesForFileName(std::string_view fileName);

/// The type that content sniffing alone finds for these bytes; nothing when it finds none.
std::optional<ContentType> contentTypeForData(std::span<const std::byte> bytes);

/// The type with this name, when the database has it.
std::optional<ContentType> contentTypeForName(std::string_view identifier);

/// The file-name extension the database prefers for the type with this name ("jpg" for
/// image/jpeg); nothing when it knows the type by no extension.
std::optional<std::string> preferredExtension(std::string_view identifier);

}  // namespace lumenscribe::platform
