// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/decoder_client.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <string>

#include "platform/child_process.h"
#include "platform/decoder_channel.h"
#include "platform/opened_item.h"

namespace lumenscribe::platform {

namespace {

using namespace decoder;

constexpr const char* kWorkerName = "lumenscribe-decoder";
constexpr int kWorkerSocket = 3;

class DecoderCategory final : public std::error_category {
 public:
  const char* name() const noexcept override { return "lumenscribe-decoder"; }
  std::string message(int value) const override {
    switch (static_cast<DecoderError>(value)) {
      case DecoderError::stopped: return "The decoder stopped on this file.";
      case DecoderError::unavailable: return "The decoder could not be started.";
      case DecoderError::refused: return "The decoder does not serve this request.";
    }
    return "Unknown decoder error.";
  }
};

// Beside the program in a build tree, in the helper folder once installed, and where the
// build put it (for test programs that live in a folder of their own).
std::filesystem::path locateWorker() {
  std::vector<std::filesystem::path> candidates;
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (!error) {
    const auto folder = program.parent_path();
    candidates.push_back(folder / kWorkerName);
    candidates.push_back(folder / LUMENSCRIBE_DECODER_INSTALL_RELATIVE / kWorkerName);
  }
#ifdef LUMENSCRIBE_DECODER_BUILD_PATH
  candidates.push_back(LUMENSCRIBE_DECODER_BUILD_PATH);
#endif
  for (const auto& candidate : candidates) {
    if (::access(candidate.c_str(), X_OK) == 0) return candidate;
  }
  return {};
}

// Said once per process, whatever number of workers it starts.
void announceWeakConfinement(const Confinement& confinement) {
  static std::atomic<bool> announced{false};
  if (confinement.complete() || announced.exchange(true)) return;
  std::fputs(
      "lumenscribe: this system does not let the decoder shut itself in fully; files are "
      "still decoded in a separate process\n",
      stderr);
}

}  // namespace

RequestInput requestInput(const OpenedItem& item) { return {item.descriptor(), item.size()}; }

const std::error_category& decoderCategory() {
  static const DecoderCategory category;
  return category;
}

std::error_code make_error_code(DecoderError error) {
  return {static_cast<int>(error), decoderCategory()};
}

struct DecoderClient::Worker {
  ChildProcess process;
  Channel channel;
  Confinement confinement;
};

DecoderClient::DecoderClient() : DecoderClient(Options{}) {}

DecoderClient::DecoderClient(Options options) : options_(std::move(options)) {
  if (options_.worker.empty()) options_.worker = locateWorker();
}

// Each socket closes first, so each worker ends by itself; the processes are then killed
// and reaped in any case.
DecoderClient::~DecoderClient() {
  for (auto& worker : idle_) worker->channel = Channel();
}

void DecoderClient::warmUp() {
  for (;;) {
    {
      const std::lock_guard lock(mutex_);
      if (running_ >= options_.maxWorkers) return;
      ++running_;
    }
    std::unique_ptr<Worker> worker = startWorker();
    const std::lock_guard lock(mutex_);
    if (!worker) {
      --running_;
      available_.notify_one();
      return;
    }
    lastConfinement_ = worker->confinement;
    idle_.push_back(std::move(worker));
    available_.notify_one();
  }
}

std::unique_ptr<DecoderClient::Worker> DecoderClient::startWorker() const {
  if (options_.worker.empty()) return nullptr;
  int ends[2];
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return nullptr;
  UniqueFd ours(ends[0]);
  const UniqueFd theirs(ends[1]);
  const InheritedDescriptor socket{theirs.get(), kWorkerSocket};
  auto process = spawnChild(options_.worker, {std::to_string(::getpid())}, -1, STDERR_FILENO,
                            std::span(&socket, 1));
  if (!process) return nullptr;

  auto worker = std::make_unique<Worker>();
  worker->process = std::move(*process);
  worker->channel = Channel(std::move(ours));
  // The worker says hello once its libraries are loaded and it is shut in.
  auto hello = worker->channel.receive(
      kMaxRequestPayload, std::chrono::steady_clock::now() + options_.replyTimeout, false);
  const Frame* frame = std::get_if<Frame>(&hello);
  if (frame == nullptr || frame->header.kind != static_cast<std::uint16_t>(RequestKind::hello)) {
    return nullptr;
  }
  Reader in(frame->payload);
  const auto confinement = readConfinement(in);
  if (!confinement || !in.finished()) return nullptr;
  worker->confinement = *confinement;
  announceWeakConfinement(worker->confinement);
  return worker;
}

std::unique_ptr<DecoderClient::Worker> DecoderClient::acquire() {
  std::unique_lock lock(mutex_);
  for (;;) {
    while (!idle_.empty()) {
      std::unique_ptr<Worker> worker = std::move(idle_.back());
      idle_.pop_back();
      // One that died while idle (killed from outside, say) is replaced, not used.
      if (worker->channel.peerClosed()) {
        --running_;
        continue;
      }
      busy_.push_back(worker->process.pid());
      return worker;
    }
    if (running_ < options_.maxWorkers) {
      ++running_;
      lock.unlock();
      std::unique_ptr<Worker> worker = startWorker();
      lock.lock();
      if (!worker) {
        --running_;
        available_.notify_one();
        return nullptr;
      }
      busy_.push_back(worker->process.pid());
      lastConfinement_ = worker->confinement;
      return worker;
    }
    available_.wait(lock);
  }
}

void DecoderClient::release(std::unique_ptr<Worker> worker, bool keep) {
  // Declared first, so that a worker let go is killed and reaped after the lock is given up.
  std::unique_ptr<Worker> discarded;
  const std::lock_guard lock(mutex_);
  std::erase(busy_, worker->process.pid());
  if (keep) {
    idle_.push_back(std::move(worker));
  } else {
    discarded = std::move(worker);
    --running_;
  }
  available_.notify_one();
}

template <class T, class Parse>
Expected<T> DecoderClient::request(RequestKind kind, const OpenedItem* item,
                                   std::span<const std::byte> arguments, Parse parse) {
  return request<T>(kind, item != nullptr ? std::optional(requestInput(*item)) : std::nullopt,
                    arguments, std::move(parse));
}

template <class T, class Parse>
Expected<T> DecoderClient::request(RequestKind kind, std::optional<RequestInput> input,
                                   std::span<const std::byte> arguments, Parse parse,
                                   const ChunkSink* output) {
  std::unique_ptr<Worker> worker = acquire();
  if (!worker) return make_error_code(DecoderError::unavailable);

  Writer out;
  out.i64(input ? input->size : 0);
  out.raw(arguments);
  const int descriptor = input ? input->descriptor : -1;
  const auto stopped = [&] {
    release(std::move(worker), false);  // killed and reaped
    return make_error_code(DecoderError::stopped);
  };
  if (!worker->channel.send(static_cast<std::uint16_t>(kind), out.data(), descriptor)) {
    return stopped();
  }
  std::int64_t outputBytes = 0;
  for (;;) {
    auto received = worker->channel.receive(
        kMaxReplyPayload, std::chrono::steady_clock::now() + options_.replyTimeout, false);
    Frame* reply = std::get_if<Frame>(&received);
    if (reply == nullptr) return stopped();

    switch (static_cast<ReplyStatus>(reply->header.kind)) {
      case ReplyStatus::chunk:
        // The worker stays in step only if every chunk is taken; one refused ends it.
        outputBytes += static_cast<std::int64_t>(reply->payload.size());
        if (output == nullptr || reply->payload.size() > kMaxOutputChunk ||
            outputBytes > kMaxRequestOutput || !(*output)(reply->payload)) {
          return stopped();
        }
        continue;
      case ReplyStatus::ok: {
        Reader in(reply->payload);
        auto value = parse(in);
        if (!value || !in.finished()) return stopped();
        release(std::move(worker), true);
        return T(std::move(*value));
      }
      case ReplyStatus::unknownRequest:
      case ReplyStatus::badRequest:
        release(std::move(worker), true);
        return make_error_code(DecoderError::refused);
      case ReplyStatus::failed:
        // It threw on this item (out of memory under its limit, most likely) and said so:
        // the same worker serves the next request.
        release(std::move(worker), true);
        return make_error_code(DecoderError::stopped);
    }
    return stopped();
  }
}

Expected<ImageDecodeStatus> DecoderClient::imageStatus(const OpenedItem& item) {
  return request<ImageDecodeStatus>(RequestKind::imageStatus, &item, {},
                                    [](Reader& in) { return readImageDecodeStatus(in); });
}

Expected<PdfOpenFacts> DecoderClient::pdfFacts(const OpenedItem& item) {
  return request<PdfOpenFacts>(RequestKind::pdfFacts, &item, {},
                               [](Reader& in) { return readPdfOpenFacts(in); });
}

CheckBudget DecoderClient::checkBudget() const {
  // A quarter of the timeout is left for the answer to come back and for slow starts.
  const auto budget = options_.replyTimeout.count() * 3 / 4;
  return {
      static_cast<std::int32_t>(std::clamp<std::int64_t>(budget, 1, kMaxCheckBudgetMilliseconds))};
}

Expected<PdfStructureFacts> DecoderClient::pdfStructure(const OpenedItem& item) {
  Writer arguments;
  write(arguments, checkBudget());
  return request<PdfStructureFacts>(RequestKind::pdfStructure, &item, arguments.data(),
                                    [](Reader& in) { return readPdfStructureFacts(in); });
}

Expected<StreamTestFacts> DecoderClient::compressedStream(const OpenedItem& item,
                                                          CompressedFormat format) {
  Writer arguments;
  write(arguments, checkBudget());
  write(arguments, format);
  return request<StreamTestFacts>(RequestKind::compressedStream, &item, arguments.data(),
                                  [](Reader& in) { return readStreamTestFacts(in); });
}

Expected<MediaPacketFacts> DecoderClient::mediaPackets(const OpenedItem& item) {
  Writer arguments;
  write(arguments, checkBudget());
  return request<MediaPacketFacts>(RequestKind::mediaPackets, &item, arguments.data(),
                                   [](Reader& in) { return readMediaPacketFacts(in); });
}

Expected<PdfAnalysis> DecoderClient::pdfAnalysis(const OpenedItem& item, PageRange range) {
  if (range.first < 0 || range.count < 0) return make_error_code(DecoderError::refused);
  Writer arguments;
  write(arguments, range);
  return request<PdfAnalysis>(RequestKind::pdfAnalysis, &item, arguments.data(),
                              [](Reader& in) { return readPdfAnalysis(in); });
}

namespace {

Expected<std::optional<RgbaImage>> previewFrom(DecoderClient& client, RequestKind kind,
                                               const OpenedItem& item, PreviewBox box) {
  if (box.maxWidth < 1 || box.maxHeight < 1 || box.maxWidth > kMaxPreviewSide ||
      box.maxHeight > kMaxPreviewSide) {
    return make_error_code(DecoderError::refused);
  }
  Writer arguments;
  write(arguments, box);
  auto reply = client.call(kind, &item, arguments.data());
  if (!reply) return reply.error();
  Reader in(*reply);
  auto preview = readPreview(in, box);
  if (!preview || !in.finished()) return make_error_code(DecoderError::stopped);
  return std::move(*preview);
}

}  // namespace

Expected<std::optional<RgbaImage>> DecoderClient::pdfFirstPage(const OpenedItem& item,
                                                               PreviewBox box) {
  return previewFrom(*this, RequestKind::pdfFirstPage, item, box);
}

Expected<std::optional<RgbaImage>> DecoderClient::picturePreview(const OpenedItem& item,
                                                                 PreviewBox box) {
  return previewFrom(*this, RequestKind::picturePreview, item, box);
}

Expected<std::optional<ImageProperties>> DecoderClient::imageProperties(const OpenedItem& item) {
  return request<std::optional<ImageProperties>>(
      RequestKind::imageProperties, &item, {}, [](Reader& in) { return readImageProperties(in); });
}

Expected<MediaDescription> DecoderClient::mediaDescription(const OpenedItem& item) {
  return request<MediaDescription>(RequestKind::mediaDescription, &item, {},
                                   [](Reader& in) { return readMediaDescription(in); });
}

Expected<std::optional<ImageProperties>> DecoderClient::imageProperties(RequestInput input) {
  return request<std::optional<ImageProperties>>(
      RequestKind::imageProperties, input, {}, [](Reader& in) { return readImageProperties(in); });
}

Expected<std::optional<PixelFingerprint>> DecoderClient::pixelFingerprint(RequestInput input) {
  return request<std::optional<PixelFingerprint>>(
      RequestKind::pixelFingerprint, input, {},
      [](Reader& in) { return readPixelFingerprint(in); });
}

Expected<std::optional<CleanCopySource>> DecoderClient::cleanCopySource(RequestInput input) {
  return request<std::optional<CleanCopySource>>(
      RequestKind::cleanCopySource, input, {}, [](Reader& in) { return readCleanCopySource(in); });
}

Expected<CleanCopyOutcome> DecoderClient::cleanCopy(RequestInput input,
                                                    const CleanCopyRequest& cleanCopy,
                                                    const ChunkSink& output) {
  Writer arguments;
  write(arguments, cleanCopy);
  std::int64_t received = 0;
  const ChunkSink counted = [&](std::span<const std::byte> chunk) {
    received += static_cast<std::int64_t>(chunk.size());
    return output(chunk);
  };
  auto outcome = request<CleanCopyOutcome>(
      RequestKind::cleanCopy, input, arguments.data(),
      [](Reader& in) { return readCleanCopyOutcome(in); }, &counted);
  // The reply must count what arrived: anything else is a worker out of step.
  if (outcome && outcome->bytes != received) return make_error_code(DecoderError::stopped);
  return outcome;
}

Expected<std::vector<std::byte>> DecoderClient::call(RequestKind kind, const OpenedItem* item,
                                                     std::span<const std::byte> arguments) {
  return request<std::vector<std::byte>>(kind, item, arguments, [](Reader& in) {
    const auto all = in.rest();
    return std::optional(std::vector<std::byte>(all.begin(), all.end()));
  });
}

std::vector<pid_t> DecoderClient::workerPids() const {
  const std::lock_guard lock(mutex_);
  std::vector<pid_t> pids = busy_;
  for (const auto& worker : idle_) pids.push_back(worker->process.pid());
  return pids;
}

std::optional<Confinement> DecoderClient::workerConfinement() const {
  const std::lock_guard lock(mutex_);
  return lastConfinement_;
}

}  // namespace lumenscribe::platform
