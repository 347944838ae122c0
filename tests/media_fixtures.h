// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "test_files.h"

// Media the fixture files cannot hold: files built on the fixtures at test time, too large
// to keep (a 10 MB cover picture) or with bytes no tool writes on purpose.
namespace lumenscribe::test {

inline const std::filesystem::path kMediaFixtures = kData / "media";

/// An ID3v2.4 tag holding `frames`, each a four-letter ID and its body. Put before an MP3,
/// it is read together with the file's own tag.
inline std::string id3Tag(const std::vector<std::pair<std::string, std::string>>& frames) {
  const auto synchsafe = [](std::size_t size) {
    return std::string{static_cast<char>(size >> 21 & 0x7F), static_cast<char>(size >> 14 & 0x7F),
                       static_cast<char>(size >> 7 & 0x7F), static_cast<char>(size & 0x7F)};
  };
  std::string body;
  for (const auto& [id, content] : frames) {
    body += id + synchsafe(content.size()) + '\0' + '\0' + content;
  }
  return std::string("ID3\x04\0\0", 6) + synchsafe(body.size()) + body;
}

/// An attached front cover of `size` bytes that start like a PNG, as an APIC frame.
inline std::pair<std::string, std::string> coverPicture(std::size_t size) {
  std::string picture = "\x89PNG\r\n\x1a\n";
  picture.resize(size);
  return {"APIC", std::string("\0image/png\0\x03\0", 13) + picture};
}

}  // namespace lumenscribe::test
