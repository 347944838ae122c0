// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "core/path_text.h"

#include "core/utf8.h"

namespace lumenscribe {

std::string validUtf8(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    if (std::size_t length = utf8::sequenceLength(bytes, 0)) {
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
