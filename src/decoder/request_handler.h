// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "decoder/output_sink.h"
#include "platform/decoder_protocol.h"

namespace lumenscribe::decoder {

struct Reply {
  platform::decoder::ReplyStatus status = platform::decoder::ReplyStatus::ok;
  std::vector<std::byte> payload;
};

/// Loads the decoders' libraries and settles their global state; called once, before the
/// worker is confined, so that nothing they load later needs a file the worker cannot open.
void initialiseDecoders();

/// Serves one request: `kind` and `payload` as they arrived, `item` the descriptor that came
/// with them (-1 when none). Every payload starts with the item's size when it was opened.
/// Never throws; a payload that does not parse is a bad request. A request with output of
/// its own (a clean copy) sends it through `sendChunk` before the reply is sent; without one
/// the output is dropped.
Reply handleRequest(std::uint16_t kind, std::span<const std::byte> payload, int item,
                    const SendChunk& sendChunk = {});

}  // namespace lumenscribe::decoder
