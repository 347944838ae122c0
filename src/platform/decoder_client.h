// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <system_error>
#include <vector>

#include "lumenscribe/expected.h"
#include "platform/decoder_protocol.h"

namespace lumenscribe::platform {

class OpenedItem;

/// Why the decoder gave no answer.
enum class DecoderError {
  stopped = 1,      // it crashed, hung, ran out of memory or answered nonsense on this item
  unavailable = 2,  // it could not be started
  refused = 3,      // it does not serve this request
};

/// What a request lets the worker read: a read-only descriptor and how many of its bytes
/// count. An inspected item is one; so is a clean copy that is checked before it is kept.
struct RequestInput {
  int descriptor = -1;
  std::int64_t size = 0;
};

/// The descriptor and size of an opened item.
RequestInput requestInput(const OpenedItem& item);

/// Takes the chunks of a request's output as they arrive; false stops the request.
using ChunkSink = std::function<bool(std::span<const std::byte>)>;

/// The most output one request may send back.
inline constexpr std::int64_t kMaxRequestOutput = std::int64_t{4} << 30;

const std::error_category& decoderCategory();
std::error_code make_error_code(DecoderError error);

/// The engine's side of the decoder workers: every format library runs in those confined
/// processes, never in ours. A worker is started on first need (or by warmUp) and kept for
/// the next request; each serves one request at a time, and up to `maxWorkers` serve
/// requests from several threads at once (the rest wait their turn). A worker that crashes,
/// hangs past the reply timeout or answers nonsense is killed and reaped, that one request
/// fails with DecoderError::stopped, and the next request starts a fresh worker.
///
///     platform::DecoderClient decoder;
///     auto status = decoder.imageStatus(item);
///     if (!status) ...  // status.error() == DecoderError::stopped: the file stopped it
class DecoderClient {
 public:
  struct Options {
    /// The worker program; empty: beside this program, where it is installed, or where the
    /// build put it.
    std::filesystem::path worker;
    /// Wall time a request may take before its worker is killed.
    std::chrono::milliseconds replyTimeout{20'000};
    /// Workers that may run at once.
    int maxWorkers = 2;
  };

  DecoderClient();
  explicit DecoderClient(Options options);
  DecoderClient(const DecoderClient&) = delete;
  DecoderClient& operator=(const DecoderClient&) = delete;
  /// Ends the workers (closing their sockets, then killing and reaping them). No request may
  /// be running.
  ~DecoderClient();

  /// Starts workers now, up to `maxWorkers`, so that no request waits for one to start (an
  /// inspection of a photo asks for two at once: its health and its metadata).
  void warmUp();

  Expected<decoder::ImageDecodeStatus> imageStatus(const OpenedItem& item);
  Expected<decoder::PdfOpenFacts> pdfFacts(const OpenedItem& item);
  /// Everything the PDF analysis reads: facts, info attributes, and of the pages in `range`
  /// the text facts, page 0's size and their text.
  Expected<decoder::PdfAnalysis> pdfAnalysis(const OpenedItem& item, decoder::PageRange range = {});
  /// Page 0 of a PDF or the picture itself, to fit `box`; nothing when there is none to show.
  Expected<std::optional<decoder::RgbaImage>> pdfFirstPage(const OpenedItem& item,
                                                           decoder::PreviewBox box);
  Expected<std::optional<decoder::RgbaImage>> picturePreview(const OpenedItem& item,
                                                             decoder::PreviewBox box);
  /// The property map of image 0; nothing when the item holds no image.
  Expected<std::optional<decoder::ImageProperties>> imageProperties(const OpenedItem& item);
  /// The tracks, decoded audio format and tags of an audio or video file, from one probe.
  Expected<decoder::MediaDescription> mediaDescription(const OpenedItem& item);

  // Whole-file checks. Each answers with what it found when its time budget (a share of
  // the reply timeout) runs out, before the worker would be killed for taking too long.
  Expected<decoder::PdfStructureFacts> pdfStructure(const OpenedItem& item);
  Expected<decoder::StreamTestFacts> compressedStream(const OpenedItem& item,
                                                      decoder::CompressedFormat format);
  Expected<decoder::MediaPacketFacts> mediaPackets(const OpenedItem& item);

  /// The property map of image 0 of any readable bytes (a clean copy being checked).
  Expected<std::optional<decoder::ImageProperties>> imageProperties(RequestInput input);
  /// SHA-256 of image 0's pixels as the comparison draws them; nothing when it does not decode.
  Expected<std::optional<decoder::PixelFingerprint>> pixelFingerprint(RequestInput input);
  /// The format and image count a clean copy would start from; nothing without a picture.
  Expected<std::optional<decoder::CleanCopySource>> cleanCopySource(RequestInput input);
  /// Makes the clean copy `request` asks for, handing its bytes to `output` in order as they
  /// arrive (at most kMaxRequestOutput of them). When `output` refuses a chunk the worker is
  /// stopped and the request fails with DecoderError::stopped; the sink knows why.
  Expected<decoder::CleanCopyOutcome> cleanCopy(RequestInput input,
                                                const decoder::CleanCopyRequest& request,
                                                const ChunkSink& output);

  /// One round trip: the item's size, then `arguments`, with its descriptor beside them (no
  /// item: size 0, no descriptor); the reply's payload back, unread.
  Expected<std::vector<std::byte>> call(decoder::RequestKind kind, const OpenedItem* item,
                                        std::span<const std::byte> arguments = {});

  /// The process IDs of the workers that run, busy or idle, for tests that end one.
  std::vector<pid_t> workerPids() const;
  /// How far the last worker started confined itself.
  std::optional<decoder::Confinement> workerConfinement() const;

 private:
  struct Worker;

  template <class T, class Parse>
  Expected<T> request(decoder::RequestKind kind, const OpenedItem* item,
                      std::span<const std::byte> arguments, Parse parse);
  /// The round trip itself: chunk frames before the reply go to `output`, when there is one
  /// (a chunk without one is a reply out of step).
  template <class T, class Parse>
  Expected<T> request(decoder::RequestKind kind, std::optional<RequestInput> input,
                      std::span<const std::byte> arguments, Parse parse,
                      const ChunkSink* output = nullptr);
  /// The time a whole-file check may take: most of the reply timeout.
  decoder::CheckBudget checkBudget() const;
  std::unique_ptr<Worker> startWorker() const;
  /// An idle worker, a new one, or (at the limit) the next to become idle; nothing when none
  /// can be started.
  std::unique_ptr<Worker> acquire();
  /// Gives a worker back for the next request, or (`keep` false) kills and reaps it.
  void release(std::unique_ptr<Worker> worker, bool keep);

  Options options_;
  mutable std::mutex mutex_;
  std::condition_variable available_;
  std::vector<std::unique_ptr<Worker>> idle_;
  std::vector<pid_t> busy_;
  int running_ = 0;
  std::optional<decoder::Confinement> lastConfinement_;
};

}  // namespace lumenscribe::platform

template <>
struct std::is_error_code_enum<lumenscribe::platform::DecoderError> : std::true_type {};
