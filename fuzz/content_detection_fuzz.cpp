// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// Content detection in the engine on any bytes: the built-in table, the MIME database's
// magic, the ZIP end record found in the tail, and whether the content fits a name.
// Seeds: tests/data/type_health/*, tests/data/health/*.
#include <cstddef>
#include <cstdint>
#include <span>

#include "identity/content_detection.h"
#include "identity/type_match.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span<const std::byte> file(reinterpret_cast<const std::byte*>(data), size);
  const auto head = file.first(std::min<std::size_t>(size, 16 * 1024));
  const auto tail = file.last(std::min<std::size_t>(size, lumenscribe::kTailSize));
  const bool executable = size > 0 && (data[size - 1] & 1);
  const auto signature = lumenscribe::detectContent(
      {head, static_cast<std::int64_t>(size), executable, [&] { return std::optional(tail); }});
  lumenscribe::endsWithZipDirectory(tail, static_cast<std::int64_t>(size));
  if (signature) {
    for (const char* name : {"photo.jpg", "notes.txt", "song.ogg", "report.pdf", "key.pub"}) {
      lumenscribe::contentFitsName(*signature, lumenscribe::claimOfName(name));
    }
  }
  return 0;
}
