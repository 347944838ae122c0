// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace lumenscribe::decoder {

/// Where a request's output goes: in the worker, chunk frames on the engine's socket.
using SendChunk = std::function<bool(std::span<const std::byte>)>;

/// Collects output into chunks of at most kMaxOutputChunk bytes and sends each when it is
/// full, so that an encoder's many small writes cost few frames. Once a send fails, every
/// later write fails too.
class OutputSink {
 public:
  explicit OutputSink(SendChunk send);

  bool write(std::span<const std::byte> bytes);
  /// Sends what is collected; false when this or an earlier send failed.
  bool flush();
  /// Bytes written so far, sent or still collected.
  std::int64_t bytes() const { return bytes_; }

 private:
  SendChunk send_;
  std::vector<std::byte> pending_;
  std::int64_t bytes_ = 0;
  bool failed_ = false;
};

}  // namespace lumenscribe::decoder
