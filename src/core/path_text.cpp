// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "core/path_text.h"

#include <cstdint>
#include <cstring>

namespace lumenscribe {

namespace {

// Length of the well-formed UTF-8 sequence at the start of `bytes`, or 0 when it is
// ill-formed (overlong forms, surrogates and values past U+10FFFF included).
std::size_t wellFormedLength(std::string_view bytes) {
  auto at = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
  const std::uint8_t lead = at(0);
  if (lead < 0x80) return 1;
  std::size_t length;
  std::uint8_t low = 0x80, high = 0xBF;  // allowed range of the second byte
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  } else {
    return 0;
  }
  if (bytes.size() < length) return 0;
  if (at(1) < low || at(1) > high) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if (at(i) < 0x80 || at(i) > 0xBF) return 0;
  }
  return length;
}

}  // namespace

bool isWellFormedUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    // Most text is ASCII: eight bytes at a time while it is.
    if (bytes.size() >= 8) {
      std::uint64_t word;
      std::memcpy(&word, bytes.data(), sizeof word);
      if ((word & 0x8080808080808080ULL) == 0) {
        bytes.remove_prefix(8);
        continue;
      }
    }
    const std::size_t length = wellFormedLength(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

std::string validUtf8(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    if (std::size_t length = wellFormedLength(bytes)) {
      text.append(bytes.substr(0, length));
      bytes.remove_prefix(length);
    } else {
      text.append("\xEF\xBF\xBD");
      bytes.remove_prefix(1);
    }
  }
  return text;
}

std::string lastPathComponent(const std::filesystem::path& path) {
  std::string name = path.filename().string();
  if (name.empty()) {
    // "dir/" names "dir"; the root names itself.
    auto parent = path.parent_path();
    name = parent.filename().string();
    if (name.empty()) name = path.root_path().string();
  }
  return name;
}

std::string pathExtension(const std::filesystem::path& path) {
  const std::string name = lastPathComponent(path);
  const auto dot = name.rfind('.');
  if (dot == std::string::npos || dot == 0) return {};
  return name.substr(dot + 1);
}

std::string asciiLower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::string fileUrl(const std::filesystem::path& path) {
  static constexpr char digits[] = "0123456789ABCDEF";
  std::string url = "file://";
  for (unsigned char c : path.string()) {
    const bool unreserved = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                            (c >= '0' && c <= '9') || c == '-' || c == '.' || c == '_' ||
                            c == '~' || c == '/';
    if (unreserved) {
      url.push_back(static_cast<char>(c));
    } else {
      url.push_back('%');
      url.push_back(digits[c >> 4]);
      url.push_back(digits[c & 0x0F]);
    }
  }
  return url;
}

}  // namespace lumenscribe
