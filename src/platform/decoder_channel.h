// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <span>
#include <variant>
#include <vector>

#include "platform/decoder_protocol.h"
#include "platform/file_descriptor.h"

namespace lumenscribe::platform::decoder {

/// One frame as it arrived, with the descriptor that came beside it, if any.
struct Frame {
  FrameHeader header;
  std::vector<std::byte> payload;
  UniqueFd descriptor;
};

/// Why no frame arrived.
enum class ReceiveFailure {
  closed,     // the other end is gone (also: it closed in the middle of a frame)
  timedOut,   // the deadline passed first
  malformed,  // not our magic or version, or a length past the cap
  failed,     // the socket itself failed
};

using Deadline = std::chrono::steady_clock::time_point;

/// One end of the engine–worker stream socket. Sends never raise SIGPIPE: a peer that is
/// gone makes them fail instead.
class Channel {
 public:
  Channel() = default;
  explicit Channel(UniqueFd socket) : socket_(std::move(socket)) {}

  int fd() const { return socket_.get(); }
  explicit operator bool() const { return static_cast<bool>(socket_); }

  /// Sends one frame; `descriptor` (when not -1) travels beside its first byte.
  bool send(std::uint16_t kind, std::span<const std::byte> payload, int descriptor = -1);

  /// Receives one frame of at most `maxPayload` bytes. Without a deadline it waits for as
  /// long as it takes. `acceptDescriptor` false closes any descriptor that arrives.
  std::variant<Frame, ReceiveFailure> receive(std::uint32_t maxPayload,
                                              std::optional<Deadline> deadline,
                                              bool acceptDescriptor);

  /// True when the other end has closed (or the socket failed), without waiting.
  bool peerClosed() const;

 private:
  UniqueFd socket_;
};

}  // namespace lumenscribe::platform::decoder
