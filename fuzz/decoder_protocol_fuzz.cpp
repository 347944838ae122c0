// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// Both sides of the decoder worker's protocol fed bytes they did not write: the engine's
// readers of frame headers and replies (a worker may have been taken over), and the
// worker's parsing of request payloads (without an item, so nothing is decoded).
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "decoder/request_handler.h"
#include "fuzz_check.h"
#include "platform/decoder_protocol.h"

using namespace lumenscribe::platform::decoder;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto bytes = std::as_bytes(std::span(data, size));
  if (bytes.size() >= kHeaderSize) {
    const auto header = decodeHeader(bytes.first<kHeaderSize>(), kMaxReplyPayload);
    FUZZ_CHECK(!header || header->length <= kMaxReplyPayload);
  }
  const auto readAll = [&](auto read) {
    Reader in(bytes);
    read(in);
  };
  readAll([](Reader& in) { readImageDecodeStatus(in); });
  readAll([](Reader& in) { readPdfOpenFacts(in); });
  readAll([](Reader& in) { readConfinement(in); });
  readAll([](Reader& in) { readConfinementProbe(in); });
  readAll([](Reader& in) { readPixelFingerprint(in); });
  readAll([](Reader& in) { readCleanCopySource(in); });
  readAll([](Reader& in) { readCleanCopyRequest(in); });
  readAll([](Reader& in) { readCleanCopyOutcome(in); });
  readAll([](Reader& in) {
    // A preview is never larger than the box it was asked for.
    const PreviewBox box{17, 9};
    const auto preview = readPreview(in, box);
    if (preview && *preview) {
      const auto& image = **preview;
      FUZZ_CHECK(image.width <= box.maxWidth && image.height <= box.maxHeight);
      FUZZ_CHECK(image.pixels.size() == static_cast<std::size_t>(image.width) *
                                            static_cast<std::size_t>(image.height) * 4);
    }
  });

  // The worker's side: any payload for any kind, no descriptor.
  if (size >= 2) {
    const auto kind = static_cast<std::uint16_t>(data[0] | data[1] << 8);
    lumenscribe::decoder::handleRequest(kind, bytes.subspan(2), -1);
  }
  return 0;
}
