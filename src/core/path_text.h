// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace lumenscribe {

/// `bytes` with every ill-formed UTF-8 sequence replaced by U+FFFD, so that any file name
/// can be shown, printed as JSON and written to a report.
std::string validUtf8(std::string_view bytes);

/// The last path component as the file system stores it (not yet UTF-8 checked).
std::string lastPathComponent(const std::filesystem::path& path);

/// The text after the last dot of the last component, as written; empty when there is
/// none, when the name ends in a dot, or when the only dot leads the name (".bashrc").
std::string pathExtension(const std::filesystem::path& path);

/// ASCII lower case; other bytes unchanged.
std::string asciiLower(std::string_view text);

/// `url` as a file URL ("file:///home/me/a%20b.txt"), every byte outside the unreserved
/// set percent-encoded, so that names that are not UTF-8 survive it.
std::string fileUrl(const std::filesystem::path& path);

}  // namespace lumenscribe
