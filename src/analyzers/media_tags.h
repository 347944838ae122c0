// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "lumenscribe/expected.h"
#include "platform/decoder_client.h"
#include "platform/decoder_protocol.h"
#include "platform/opened_item.h"

namespace lumenscribe {

/// One probe of an audio or video file, for both media analyses: the description, or why
/// the decoder gave none.
using MediaProbe = Expected<platform::decoder::MediaDescription>;

/// Asks the decoder for the item's media description. An item that could not be opened is
/// not sent: it gives the error of reading it.
MediaProbe probeMedia(const platform::OpenedItem& item, platform::DecoderClient& decoder);

/// A tag as the media analyses report it: its key and its value, trimmed.
struct MediaTagText {
  std::string key;
  std::string value;
};

/// The tags of every metadata group in order (the container's, then each stream's), each
/// value trimmed of white space and line breaks; tags whose key or trimmed value is empty
/// are left out. Nothing when the probe failed.
std::vector<MediaTagText> mediaTagTexts(const MediaProbe& media);

}  // namespace lumenscribe
