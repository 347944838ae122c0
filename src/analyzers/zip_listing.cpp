// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/zip_listing.h"

#include <charconv>
#include <cstring>

#include "analyzers/container_tables.h"
#include "core/utf8.h"

namespace lumenscribe {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view trimmedOfBlanks(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

// The leading piece up to the next blank, removed from `text` with the blanks after it.
std::string_view takePiece(std::string_view& text) {
  std::size_t end = 0;
  while (end < text.size() && !isBlank(text[end])) ++end;
  const std::string_view piece = text.substr(0, end);
  text.remove_prefix(end);
  return piece;
}

std::size_t blanksInFront(std::string_view text) {
  std::size_t count = 0;
  while (count < text.size() && isBlank(text[count])) ++count;
  return count;
}

// A decimal integer with an optional sign, as the length column holds; nothing for any
// other text or one past the 64-bit range.
std::optional<std::int64_t> decimalInteger(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

// The length of the newline character at `at` (CR, VT, FF, NEL, LS or PS), or 0.
std::size_t newlineLength(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
  const unsigned char c = byte(at);
  if (c >= 0x0B && c <= 0x0D) return 1;
  if (c == 0xC2 && at + 1 < text.size() && byte(at + 1) == 0x85) return 2;
  if (c == 0xE2 && at + 2 < text.size() && byte(at + 1) == 0x80 &&
      (byte(at + 2) == 0xA8 || byte(at + 2) == 0xA9)) {
    return 3;
  }
  return 0;
}

}  // namespace

std::optional<ZipListingEntry> parseZipListingLine(std::string_view line) {
  line = trimmedOfBlanks(line);
  if (line.empty() || line.starts_with("Archive:") || line.starts_with("Length") ||
      line.starts_with("--------") || line.find("files") != std::string_view::npos) {
    return std::nullopt;
  }
  const std::string_view length = takePiece(line);
  line.remove_prefix(blanksInFront(line));
  const std::string_view date = takePiece(line);
  line.remove_prefix(blanksInFront(line));
  const std::string_view time = takePiece(line);
  // unzip pads the name column with three blanks; any more belong to the name.
  const std::size_t padding = blanksInFront(line);
  line.remove_prefix(padding <= 3 ? padding : 3);
  if (length.empty() || date.empty() || time.empty() || trimmedOfBlanks(line).empty()) {
    return std::nullopt;
  }
  const auto bytes = decimalInteger(length);
  if (!bytes) return std::nullopt;
  return ZipListingEntry{*bytes, line};
}

void addZipEntry(const ZipListingEntry& entry, ContainerSummary& summary) {
  const std::string_view name = entry.name;
  if (name.ends_with('/')) {
    ++summary.folderCount;
    if (summary.sampleItems.size() < ContainerSummary::kMaxSamples) {
      summary.addSample("📁 " + std::string(name));
    }
    return;
  }
  ++summary.fileCount;
  summary.addBytes(entry.length);
  const std::size_t slash = name.rfind('/');
  const std::string_view last = slash == std::string_view::npos ? name : name.substr(slash + 1);
  // __MACOSX/._photo.jpg by its own dot, photos/.cache/a.jpg by its folder's.
  if (last.starts_with('.') || name.find("/.") != std::string_view::npos) ++summary.hiddenCount;
  const std::string_view extension = containerExtension(name);
  if (!extension.empty()) {
    const std::string lower = lowerCasedText(extension);
    ++summary.extensionCounts[lower];
    if (containers::isIn(containers::kArchiveExtensions, lower)) ++summary.nestedArchiveCount;
    // No permission bits come with a listing: the extension alone says "executable".
    if (containers::isIn(containers::kExecutableExtensions, lower)) ++summary.executableCount;
    classifyContainerFile(last, lower, summary);
  }
  summary.addSample(name);
}

void ZipListingReader::feed(std::string_view bytes) {
  while (validUtf8_ && !bytes.empty()) {
    const std::size_t newline = bytes.find('\n');
    if (newline == std::string_view::npos) {
      partial_.append(bytes);
      return;
    }
    if (partial_.empty()) {
      takeLine(bytes.substr(0, newline));
    } else {
      partial_.append(bytes.substr(0, newline));
      takeLine(partial_);
      partial_.clear();
    }
    bytes.remove_prefix(newline + 1);
  }
}

void ZipListingReader::finish() {
  if (validUtf8_ && !partial_.empty()) takeLine(partial_);
  partial_.clear();
}

void ZipListingReader::takeLine(std::string_view bytes) {
  // A line feed is never part of a longer UTF-8 sequence, so checking line by line checks
  // the whole output.
  if (!utf8::isValid(bytes)) {
    validUtf8_ = false;
    return;
  }
  std::size_t start = 0;
  for (std::size_t at = 0; at < bytes.size();) {
    if (const std::size_t length = newlineLength(bytes, at)) {
      takeTextLine(bytes.substr(start, at - start));
      at += length;
      start = at;
    } else {
      ++at;
    }
  }
  takeTextLine(bytes.substr(start));
}

void ZipListingReader::takeTextLine(std::string_view line) {
  const std::string_view trimmed = trimmedOfBlanks(line);
  if (trimmed.empty()) return;
  if (!trimmed.starts_with("Archive:")) listedMore_ = true;
  if (const auto entry = parseZipListingLine(trimmed)) {
    addZipEntry(*entry, summary_);
    ++entries_;
  }
}

}  // namespace lumenscribe
