// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/output_sink.h"

#include <algorithm>

#include "platform/decoder_protocol.h"

namespace lumenscribe::decoder {

using platform::decoder::kMaxOutputChunk;

OutputSink::OutputSink(SendChunk send) : send_(std::move(send)) {}

bool OutputSink::write(std::span<const std::byte> bytes) {
  while (!failed_ && !bytes.empty()) {
    const std::size_t room = kMaxOutputChunk - pending_.size();
    const std::size_t taken = std::min(room, bytes.size());
    pending_.insert(pending_.end(), bytes.begin(), bytes.begin() + taken);
    bytes = bytes.subspan(taken);
    bytes_ += static_cast<std::int64_t>(taken);
    if (pending_.size() == kMaxOutputChunk) flush();
  }
  return !failed_;
}

bool OutputSink::flush() {
  if (!failed_ && !pending_.empty()) {
    failed_ = send_ && !send_(pending_);
    pending_.clear();
  }
  return !failed_;
}

}  // namespace lumenscribe::decoder
