// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/ffmpeg_log.h"

extern "C" {
#include <libavutil/log.h>
}

#include <cstdarg>
#include <utility>

namespace lumenscribe::decoder {

namespace {

// A damaged file can log once per packet; the first few say what there is to say, and the
// count of the rest is kept by an empty entry for each.
constexpr std::size_t kKeptMessages = 256;

std::mutex& captureTurn() {
  static std::mutex mutex;
  return mutex;
}

// Where messages go while a capture lives. Demuxing runs on the capturing thread, but
// FFmpeg may log from others, so the sink is shared under a lock of its own.
struct Sink {
  std::mutex mutex;
  std::vector<std::string>* messages = nullptr;
};

Sink& sink() {
  static Sink shared;
  return shared;
}

void onLog(void* context, int level, const char* format, va_list arguments) {
  // Called from C: nothing may be thrown through FFmpeg's frames.
  try {
    if (level > AV_LOG_ERROR) return;
    Sink& shared = sink();
    const std::lock_guard lock(shared.mutex);
    if (shared.messages == nullptr) return;
    if (shared.messages->size() >= kKeptMessages) {
      shared.messages->emplace_back();
      return;
    }
    char line[1024];
    int printPrefix = 1;
    va_list copy;
    va_copy(copy, arguments);
    av_log_format_line2(context, level, format, copy, line, sizeof line, &printPrefix);
    va_end(copy);
    std::string message(line);
    while (!message.empty() && (message.back() == '\n' || message.back() == '\r')) {
      message.pop_back();
    }
    shared.messages->push_back(std::move(message));
  } catch (...) {
    // A message lost to a failed allocation only makes a verdict less specific.
  }
}

}  // namespace

void silenceFfmpegLog() {
  static std::once_flag once;
  std::call_once(once, [] {
    av_log_set_level(AV_LOG_ERROR);
    av_log_set_callback(onLog);
  });
}

FfmpegErrorCapture::FfmpegErrorCapture() : turn_(captureTurn()) {
  silenceFfmpegLog();
  const std::lock_guard lock(sink().mutex);
  sink().messages = &messages_;
}

FfmpegErrorCapture::~FfmpegErrorCapture() {
  const std::lock_guard lock(sink().mutex);
  sink().messages = nullptr;
}

std::vector<std::string> FfmpegErrorCapture::take() {
  const std::lock_guard lock(sink().mutex);
  return std::exchange(messages_, {});
}

}  // namespace lumenscribe::decoder
