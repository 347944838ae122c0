// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/media_tags.h"

#include <system_error>

#include "platform/unicode_text.h"

namespace lumenscribe {

MediaProbe probeMedia(const platform::OpenedItem& item, platform::DecoderClient& decoder) {
  // A regular file that exists but cannot be opened was refused its reading.
  if (!item.isReadable()) return std::make_error_code(std::errc::permission_denied);
  return decoder.mediaDescription(item);
}

std::vector<MediaTagText> mediaTagTexts(const MediaProbe& media) {
  std::vector<MediaTagText> texts;
  if (!media) return texts;
  for (const auto& group : media->metadata) {
    for (const auto& tag : group) {
      const std::string_view value = platform::trimmedWhitespace(tag.value);
      if (tag.key.empty() || value.empty()) continue;
      texts.push_back({tag.key, std::string(value)});
    }
  }
  return texts;
}

}  // namespace lumenscribe
