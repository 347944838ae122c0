// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/media_demux.h"

extern "C" {
#include <libavcodec/packet.h>
#include <libavutil/dict.h>
#include <libavutil/error.h>
}

#include <algorithm>
#include <cctype>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include "decoder/avio_source.h"
#include "decoder/ffmpeg_log.h"

namespace lumenscribe::decoder {

namespace {

// A demuxer that keeps asking to be called again without giving a packet is stuck.
constexpr int kMaxRetries = 1000;

struct FreePacket {
  void operator()(AVPacket* packet) const noexcept { av_packet_free(&packet); }
};

// The demuxer's options, freed on every path.
struct Options {
  Options() = default;
  Options(const Options&) = delete;
  Options& operator=(const Options&) = delete;
  ~Options() { av_dict_free(&dictionary); }
  AVDictionary* dictionary = nullptr;
};

bool mentionsChecksum(std::string_view message) {
  std::string lower(message);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower.find("crc") != std::string::npos || lower.find("checksum") != std::string::npos;
}

std::int32_t saturatedAdd(std::int32_t count, std::int64_t more) {
  return static_cast<std::int32_t>(
      std::min<std::int64_t>(count + more, std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

MediaPacketFacts demuxEveryPacket(const ItemBytes& item,
                                  std::chrono::steady_clock::time_point deadline) {
  MediaPacketFacts facts;
  FfmpegErrorCapture errors;
  Options options;
  av_dict_set(&options.dictionary, "err_detect", "crccheck", 0);
  const std::unique_ptr<MediaInput> input = MediaInput::open(item, &options.dictionary);
  const std::unique_ptr<AVPacket, FreePacket> packet(input ? av_packet_alloc() : nullptr);
  if (input) {
    facts.opened = true;
    facts.streams = static_cast<std::int32_t>(
        std::min<unsigned>(input->format()->nb_streams, std::numeric_limits<std::int32_t>::max()));
  }
  int retries = 0;
  while (packet && std::chrono::steady_clock::now() < deadline) {
    const int result = av_read_frame(input->format(), packet.get());
    if (result == AVERROR(EAGAIN) && ++retries < kMaxRetries) continue;
    if (result == AVERROR_EOF) {
      facts.complete = true;
      break;
    }
    if (result < 0) {
      facts.readErrors = saturatedAdd(facts.readErrors, 1);
      facts.complete = true;  // nothing more can be read: the end, as far as it goes
      break;
    }
    retries = 0;
    // A packet flagged corrupt is most often the last one of a file written as a stream,
    // shorter than its header promised: no damage by itself.
    ++facts.packets;
    av_packet_unref(packet.get());
  }
  // Also when no demuxer took the file: a checksum that failed in its header says why.
  for (const std::string& message : errors.take()) {
    if (mentionsChecksum(message)) {
      facts.checksumErrors = saturatedAdd(facts.checksumErrors, 1);
    } else {
      facts.readErrors = saturatedAdd(facts.readErrors, 1);
    }
  }
  return facts;
}

}  // namespace lumenscribe::decoder
