// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/compressed_stream.h"

#include <bzlib.h>
#include <lzma.h>
#include <zlib.h>
#include <zstd.h>
#include <zstd_errors.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <span>
#include <vector>

#include "platform/file_descriptor.h"

namespace lumenscribe::decoder {

namespace {

using platform::decoder::StreamTestOutcome;

constexpr std::size_t kInputChunk = 1024 * 1024;
constexpr std::size_t kOutputChunk = 256 * 1024;
// What xz may ask for: its presets need at most 674 MiB (-9e), everyday files far less.
constexpr std::uint64_t kXzMemoryLimit = 256ULL * 1024 * 1024;
// zstd's own default limit without --long: windows of up to 128 MiB.
constexpr int kZstdWindowLogMax = 27;

enum class Step {
  more,       // the output buffer filled: call again with the rest of the input
  needInput,  // every byte given was used and the stream goes on
  memberEnd,  // one member (gzip, bzip2) or frame (zstd) or the whole stream (xz) ended
  failed,
  tooMuchMemory,
};

/// One format's decompressor. `decode` uses what it can of `input` (telling how much in
/// `used`), adds what it produced to `expanded` and drops it; `last` says no input follows.
class StreamDecoder {
 public:
  virtual ~StreamDecoder() = default;
  virtual bool ready() const = 0;
  virtual Step decode(std::span<const std::byte> input, bool last, std::size_t& used,
                      std::int64_t& expanded) = 0;
  /// Whether these bytes start another member; if so the decoder is made ready for it.
  virtual bool beginNextMember(std::span<const std::byte> input) = 0;

 protected:
  std::vector<unsigned char> out_ = std::vector<unsigned char>(kOutputChunk);
};

class GzipDecoder final : public StreamDecoder {
 public:
  GzipDecoder() { ready_ = inflateInit2(&stream_, 16 + MAX_WBITS) == Z_OK; }
  ~GzipDecoder() override {
    if (ready_) inflateEnd(&stream_);
  }
  bool ready() const override { return ready_; }

  Step decode(std::span<const std::byte> input, bool /*last*/, std::size_t& used,
              std::int64_t& expanded) override {
    const auto size = static_cast<uInt>(std::min<std::size_t>(input.size(), UINT_MAX));
    stream_.next_in = reinterpret_cast<Bytef*>(const_cast<std::byte*>(input.data()));
    stream_.avail_in = size;
    stream_.next_out = out_.data();
    stream_.avail_out = static_cast<uInt>(out_.size());
    const int result = inflate(&stream_, Z_NO_FLUSH);
    used = size - stream_.avail_in;
    expanded += static_cast<std::int64_t>(out_.size() - stream_.avail_out);
    switch (result) {
      case Z_STREAM_END: return Step::memberEnd;
      case Z_OK: return stream_.avail_out == 0 ? Step::more : Step::needInput;
      // No progress was possible: zlib wants input that is not in this chunk.
      case Z_BUF_ERROR: return Step::needInput;
      case Z_MEM_ERROR: return Step::tooMuchMemory;
      default: return Step::failed;  // Z_DATA_ERROR (bad data or checksum), Z_NEED_DICT
    }
  }

  bool beginNextMember(std::span<const std::byte> input) override {
    if (input.size() < 2 || input[0] != std::byte{0x1F} || input[1] != std::byte{0x8B}) {
      return false;
    }
    return inflateReset(&stream_) == Z_OK;
  }

 private:
  z_stream stream_{};
  bool ready_ = false;
};

class Bzip2Decoder final : public StreamDecoder {
 public:
  Bzip2Decoder() { ready_ = BZ2_bzDecompressInit(&stream_, 0, 0) == BZ_OK; }
  ~Bzip2Decoder() override {
    if (ready_) BZ2_bzDecompressEnd(&stream_);
  }
  bool ready() const override { return ready_; }

  Step decode(std::span<const std::byte> input, bool /*last*/, std::size_t& used,
              std::int64_t& expanded) override {
    const auto size = static_cast<unsigned>(std::min<std::size_t>(input.size(), UINT_MAX));
    stream_.next_in = reinterpret_cast<char*>(const_cast<std::byte*>(input.data()));
    stream_.avail_in = size;
    stream_.next_out = reinterpret_cast<char*>(out_.data());
    stream_.avail_out = static_cast<unsigned>(out_.size());
    const int result = BZ2_bzDecompress(&stream_);
    used = size - stream_.avail_in;
    expanded += static_cast<std::int64_t>(out_.size() - stream_.avail_out);
    switch (result) {
      case BZ_STREAM_END: return Step::memberEnd;
      case BZ_OK: return stream_.avail_out == 0 ? Step::more : Step::needInput;
      case BZ_MEM_ERROR: return Step::tooMuchMemory;
      default: return Step::failed;  // BZ_DATA_ERROR (a block's CRC), BZ_DATA_ERROR_MAGIC
    }
  }

  bool beginNextMember(std::span<const std::byte> input) override {
    if (input.size() < 3 || input[0] != std::byte{'B'} || input[1] != std::byte{'Z'} ||
        input[2] != std::byte{'h'}) {
      return false;
    }
    BZ2_bzDecompressEnd(&stream_);
    stream_ = bz_stream{};
    ready_ = BZ2_bzDecompressInit(&stream_, 0, 0) == BZ_OK;
    return ready_;
  }

 private:
  bz_stream stream_{};
  bool ready_ = false;
};

class XzDecoder final : public StreamDecoder {
 public:
  // Concatenated streams and stream padding are one file, as xz itself reads them.
  XzDecoder() {
    ready_ = lzma_stream_decoder(&stream_, kXzMemoryLimit, LZMA_CONCATENATED) == LZMA_OK;
  }
  ~XzDecoder() override { lzma_end(&stream_); }
  bool ready() const override { return ready_; }

  Step decode(std::span<const std::byte> input, bool last, std::size_t& used,
              std::int64_t& expanded) override {
    stream_.next_in = reinterpret_cast<const std::uint8_t*>(input.data());
    stream_.avail_in = input.size();
    stream_.next_out = out_.data();
    stream_.avail_out = out_.size();
    const lzma_ret result = lzma_code(&stream_, last ? LZMA_FINISH : LZMA_RUN);
    used = input.size() - stream_.avail_in;
    expanded += static_cast<std::int64_t>(out_.size() - stream_.avail_out);
    switch (result) {
      case LZMA_STREAM_END: return Step::memberEnd;
      case LZMA_OK: return stream_.avail_out == 0 ? Step::more : Step::needInput;
      // At LZMA_FINISH: the input ended inside a stream.
      case LZMA_BUF_ERROR: return Step::needInput;
      case LZMA_MEMLIMIT_ERROR:
      case LZMA_MEM_ERROR: return Step::tooMuchMemory;
      default: return Step::failed;  // LZMA_DATA_ERROR (a check), LZMA_FORMAT_ERROR, ...
    }
  }

  // The decoder itself goes on to the next stream.
  bool beginNextMember(std::span<const std::byte> /*input*/) override { return false; }

 private:
  lzma_stream stream_ = LZMA_STREAM_INIT;
  bool ready_ = false;
};

class ZstdDecoder final : public StreamDecoder {
 public:
  ZstdDecoder() : context_(ZSTD_createDCtx()) {
    ready_ = context_ != nullptr && !ZSTD_isError(ZSTD_DCtx_setParameter(
                                        context_.get(), ZSTD_d_windowLogMax, kZstdWindowLogMax));
  }
  bool ready() const override { return ready_; }

  Step decode(std::span<const std::byte> input, bool /*last*/, std::size_t& used,
              std::int64_t& expanded) override {
    ZSTD_inBuffer in{input.data(), input.size(), 0};
    ZSTD_outBuffer out{out_.data(), out_.size(), 0};
    const std::size_t result = ZSTD_decompressStream(context_.get(), &out, &in);
    used = in.pos;
    expanded += static_cast<std::int64_t>(out.pos);
    if (ZSTD_isError(result)) {
      return ZSTD_getErrorCode(result) == ZSTD_error_frameParameter_windowTooLarge
                 ? Step::tooMuchMemory
                 : Step::failed;
    }
    if (result == 0) return Step::memberEnd;  // a frame ended and is flushed
    return out.pos == out.size ? Step::more : Step::needInput;
  }

  // libzstd reads the next frame (or a skippable one) by itself; anything else fails there.
  bool beginNextMember(std::span<const std::byte> /*input*/) override { return true; }

 private:
  struct FreeContext {
    void operator()(ZSTD_DCtx* context) const noexcept { ZSTD_freeDCtx(context); }
  };
  std::unique_ptr<ZSTD_DCtx, FreeContext> context_;
  bool ready_ = false;
};

std::unique_ptr<StreamDecoder> decoderFor(CompressedFormat format) {
  switch (format) {
    case CompressedFormat::gzip: return std::make_unique<GzipDecoder>();
    case CompressedFormat::bzip2: return std::make_unique<Bzip2Decoder>();
    case CompressedFormat::xz: return std::make_unique<XzDecoder>();
    case CompressedFormat::zstd: return std::make_unique<ZstdDecoder>();
  }
  return nullptr;
}

StreamTestFacts finished(StreamTestOutcome outcome, std::int64_t expanded, bool trailing = false) {
  return {outcome, trailing, expanded};
}

}  // namespace

StreamTestFacts testCompressedStream(const ItemBytes& item, CompressedFormat format,
                                     std::chrono::steady_clock::time_point deadline) {
  const std::unique_ptr<StreamDecoder> decoder = decoderFor(format);
  if (!decoder || !decoder->ready() || item.fd < 0 || item.size <= 0) {
    return finished(StreamTestOutcome::unsupported, 0);
  }
  std::vector<std::byte> buffer(kInputChunk);
  std::int64_t expanded = 0;
  std::int64_t offset = 0;
  bool atMemberEnd = false;  // the last member ended exactly where the input read so far ends

  while (offset < item.size) {
    const auto wanted =
        static_cast<std::size_t>(std::min<std::int64_t>(kInputChunk, item.size - offset));
    const auto got = platform::readFullyAt(item.fd, std::span(buffer).first(wanted), offset);
    if (!got || *got == 0) return finished(StreamTestOutcome::truncated, expanded);
    offset += static_cast<std::int64_t>(*got);
    const bool last = offset >= item.size;
    std::span<const std::byte> input = std::span(buffer).first(*got);

    if (atMemberEnd) {
      if (!decoder->beginNextMember(input)) {
        return finished(StreamTestOutcome::intact, expanded, true);
      }
      atMemberEnd = false;
    }
    for (;;) {
      if (std::chrono::steady_clock::now() >= deadline) {
        return finished(StreamTestOutcome::outOfTime, expanded);
      }
      std::size_t used = 0;
      const Step step = decoder->decode(input, last, used, expanded);
      input = input.subspan(std::min(used, input.size()));
      if (step == Step::failed) return finished(StreamTestOutcome::corrupt, expanded);
      if (step == Step::tooMuchMemory) return finished(StreamTestOutcome::tooMuchMemory, expanded);
      if (step == Step::more) continue;
      if (step == Step::needInput) {
        // Nothing used and nothing made at the end of the file: the stream is cut short.
        if (last) return finished(StreamTestOutcome::truncated, expanded);
        if (!input.empty() && used == 0) return finished(StreamTestOutcome::corrupt, expanded);
        if (input.empty()) break;
        continue;
      }
      // A member ended.
      if (input.empty()) {
        atMemberEnd = true;
        break;
      }
      if (!decoder->beginNextMember(input)) {
        return finished(StreamTestOutcome::intact, expanded, true);
      }
    }
  }
  return finished(atMemberEnd ? StreamTestOutcome::intact : StreamTestOutcome::truncated, expanded);
}

}  // namespace lumenscribe::decoder
