// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The media request as the decoder worker serves it, over any bytes: FFmpeg probes them
// through the item's descriptor, the description goes through the wire form the engine reads
// back, and the audio and video analyses turn it into rows. The same bytes, read as a reply
// from a misbehaving worker, must be refused or analysed without harm.
#include <cstddef>
#include <cstdint>

#include "analyzers/audio_analysis.h"
#include "analyzers/video_analysis.h"
#include "decoder/media_description.h"
#include "decoder/request_handler.h"
#include "fuzz_check.h"
#include "fuzz_item.h"

namespace {

void analyze(const lumenscribe::platform::decoder::MediaDescription& media) {
  lumenscribe::Accumulators accumulators;
  lumenscribe::analyzeAudio(media, accumulators);
  lumenscribe::analyzeVideo(media, accumulators);
  FUZZ_CHECK(!accumulators.sections.empty());
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  lumenscribe::decoder::initialiseDecoders();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lumenscribe;
  const fuzz::FuzzItem item(data, size);
  const auto media = decoder::describeMedia(item.bytes());

  platform::decoder::Writer out;
  platform::decoder::write(out, media);
  platform::decoder::Reader in(out.data());
  const auto read = platform::decoder::readMediaDescription(in);
  // Every description the worker makes must pass the engine's checks unchanged.
  FUZZ_CHECK(read && in.finished() && *read == media);
  analyze(*read);

  platform::decoder::Reader reply(std::as_bytes(std::span(data, size)));
  if (const auto forged = platform::decoder::readMediaDescription(reply)) analyze(*forged);
  return 0;
}
