// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

extern "C" {
#include <libavformat/avformat.h>
}

#include <memory>

#include "decoder/item_bytes.h"

namespace lumenscribe::decoder {

/// An FFmpeg demuxer over the item: a custom AVIOContext reads it with pread, never past
/// its size and never moving the descriptor's offset, and the demuxer may open nothing else
/// (references to other files, playlists and image sequences are refused).
///
///     auto input = MediaInput::open(item);
///     if (!input) return;  // no demuxer takes the bytes
///     av_read_frame(input->format(), packet);
class MediaInput {
 public:
  /// Nothing when no demuxer takes the item or FFmpeg cannot set up; `error` then gets
  /// FFmpeg's code of why. `options` are the demuxer's (avformat_open_input's), left with
  /// those it did not use.
  static std::unique_ptr<MediaInput> open(const ItemBytes& item, AVDictionary** options = nullptr,
                                          int* error = nullptr);

  ~MediaInput();
  MediaInput(const MediaInput&) = delete;
  MediaInput& operator=(const MediaInput&) = delete;

  AVFormatContext* format() const { return format_; }

  /// What the I/O context reads from: the item and this input's position in it.
  struct Source;

 private:
  MediaInput() = default;

  std::unique_ptr<Source> source_;
  AVIOContext* io_ = nullptr;
  AVFormatContext* format_ = nullptr;
};

}  // namespace lumenscribe::decoder
