// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace lumenscribe::decoder {

/// UTF-16 code units as poppler hands them out, as UTF-8; an unpaired surrogate becomes
/// U+FFFD, so the result is always well-formed.
std::string utf8FromUtf16(std::span<const std::uint16_t> units);

/// An info-dictionary string as UTF-8. poppler decodes a string with a UTF-16 byte-order
/// mark and hands any other string over byte by byte; those bytes are read as PDFDocEncoding,
/// or as UTF-8 when they begin with its byte-order mark (as PDF 2.0 allows).
std::string infoText(std::span<const std::uint16_t> units);

/// True when `text` (UTF-8) holds anything but white space and line breaks (general category
/// Z, U+0009 to U+000D, U+0085), so an empty page's lone form feed is no text.
bool hasVisibleText(std::string_view text);

/// Shortens `text` (UTF-8) to at most `maxSize` bytes without splitting a character.
void truncateText(std::string& text, std::size_t maxSize);

}  // namespace lumenscribe::decoder
