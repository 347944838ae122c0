// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace lumenscribe::containers {

// Lower-case extensions without the dot, compared by exact equality with a lower-cased
// extension.

inline constexpr std::array<std::string_view, 16> kImageExtensions = {
    "jpg", "jpeg", "png", "gif", "heic", "heif", "tif", "tiff",
    "bmp", "webp", "raw", "arw", "cr2",  "cr3",  "nef", "dng"};

inline constexpr std::array<std::string_view, 9> kVideoExtensions = {
    "mov", "mp4", "m4v", "avi", "mkv", "webm", "wmv", "mpeg", "mpg"};

inline constexpr std::array<std::string_view, 9> kAudioExtensions = {
    "wav", "aif", "aiff", "mp3", "m4a", "aac", "flac", "caf", "ogg"};

inline constexpr std::array<std::string_view, 14> kDocumentExtensions = {
    "txt", "rtf",  "pdf",   "doc",     "docx", "xls", "xlsx",
    "ppt", "pptx", "pages", "numbers", "key",  "csv", "md"};

inline constexpr std::array<std::string_view, 12> kExecutableExtensions = {
    "app", "command", "sh", "zsh", "bash", "py", "pl", "rb", "exe", "msi", "bat", "cmd"};

inline constexpr std::array<std::string_view, 10> kArchiveExtensions = {
    "zip", "tar", "gz", "tgz", "bz2", "xz", "7z", "rar", "dmg", "pkg"};

// Searched as substrings of the lower-cased file name; a name counts once however many of
// them it holds.
inline constexpr std::array<std::string_view, 11> kExplicitTerms = {
    "porn", "porno", "xxx", "nsfw", "nude", "nudes", "nudity", "explicit", "adult", "sex", "sexy"};

template <std::size_t N>
constexpr bool isIn(const std::array<std::string_view, N>& set, std::string_view extension) {
  return std::find(set.begin(), set.end(), extension) != set.end();
}

}  // namespace lumenscribe::containers
