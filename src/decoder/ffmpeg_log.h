// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace lumenscribe::decoder {

/// Sends FFmpeg's log nowhere, for the whole process; what matters reaches the result
/// through an FfmpegErrorCapture instead of the user's terminal. Safe to call again.
void silenceFfmpegLog();

/// Collects the error messages (AV_LOG_ERROR and worse) FFmpeg logs while it lives. FFmpeg
/// has one log for the whole process, so captures take turns: a second one waits for the
/// first to end.
class FfmpegErrorCapture {
 public:
  FfmpegErrorCapture();
  ~FfmpegErrorCapture();
  FfmpegErrorCapture(const FfmpegErrorCapture&) = delete;
  FfmpegErrorCapture& operator=(const FfmpegErrorCapture&) = delete;

  /// The messages so far, without their line ends (at most a few hundred are kept).
  std::vector<std::string> take();

 private:
  std::unique_lock<std::mutex> turn_;
  std::vector<std::string> messages_;
};

}  // namespace lumenscribe::decoder
