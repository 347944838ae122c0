// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/avio_source.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>

#include "decoder/ffmpeg_log.h"

namespace lumenscribe::decoder {

namespace {

constexpr int kBufferSize = 64 * 1024;

}  // namespace

struct MediaInput::Source {
  ItemBytes item;
  std::int64_t position = 0;
};

namespace {

int readPacket(void* opaque, std::uint8_t* buffer, int size) {
  auto* source = static_cast<MediaInput::Source*>(opaque);
  if (size <= 0) return AVERROR(EINVAL);
  if (source->position >= source->item.size) return AVERROR_EOF;
  const auto wanted =
      static_cast<std::size_t>(std::min<std::int64_t>(size, source->item.size - source->position));
  for (;;) {
    const ssize_t count = ::pread(source->item.fd, buffer, wanted, source->position);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return AVERROR(errno);
    if (count == 0) return AVERROR_EOF;  // the file shrank since it was opened
    source->position += count;
    return static_cast<int>(count);
  }
}

std::int64_t seekTo(void* opaque, std::int64_t offset, int whence) {
  auto* source = static_cast<MediaInput::Source*>(opaque);
  if (whence & AVSEEK_SIZE) return source->item.size;
  std::int64_t base = 0;
  switch (whence & ~AVSEEK_FORCE) {
    case SEEK_SET: base = 0; break;
    case SEEK_CUR: base = source->position; break;
    case SEEK_END: base = source->item.size; break;
    default: return AVERROR(EINVAL);
  }
  // Offsets come from file data: refuse any that would overflow or point before the start.
  if ((offset > 0 && base > INT64_MAX - offset) || (offset < 0 && base + offset < 0)) {
    return AVERROR(EINVAL);
  }
  source->position = base + offset;
  return source->position;
}

// A demuxer that wants another file (an HLS playlist, a QuickTime reference, an image
// sequence) does not get it: only the item itself is read.
int refuseToOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
  return AVERROR(EPERM);
}

}  // namespace

std::unique_ptr<MediaInput> MediaInput::open(const ItemBytes& item, AVDictionary** options,
                                             int* error) {
  const auto fail = [error](int code) -> std::unique_ptr<MediaInput> {
    if (error != nullptr) *error = code;
    return nullptr;
  };
  if (item.fd < 0 || item.size <= 0) return fail(AVERROR_INVALIDDATA);
  silenceFfmpegLog();
  std::unique_ptr<MediaInput> input(new MediaInput());
  input->source_ = std::make_unique<Source>(Source{item, 0});

  auto* buffer = static_cast<unsigned char*>(av_malloc(kBufferSize));
  if (buffer == nullptr) return fail(AVERROR(ENOMEM));
  input->io_ =
      avio_alloc_context(buffer, kBufferSize, 0, input->source_.get(), readPacket, nullptr, seekTo);
  if (input->io_ == nullptr) {
    av_free(buffer);
    return fail(AVERROR(ENOMEM));
  }
  input->io_->seekable = AVIO_SEEKABLE_NORMAL;

  AVFormatContext* format = avformat_alloc_context();
  if (format == nullptr) return fail(AVERROR(ENOMEM));
  format->pb = input->io_;
  format->flags |= AVFMT_FLAG_CUSTOM_IO;
  format->io_open = refuseToOpen;
  // On failure avformat_open_input frees the context itself (but not our I/O context).
  if (const int opened = avformat_open_input(&format, nullptr, nullptr, options); opened < 0) {
    return fail(opened);
  }
  input->format_ = format;
  return input;
}

MediaInput::~MediaInput() {
  // The demuxer first: it may still read while it closes. Custom I/O stays ours to free.
  if (format_ != nullptr) avformat_close_input(&format_);
  if (io_ != nullptr) {
    av_freep(&io_->buffer);
    avio_context_free(&io_);
  }
}

}  // namespace lumenscribe::decoder
