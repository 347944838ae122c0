// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/request_handler.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <exception>
#include <string_view>

#include "decoder/clean_copy.h"
#include "decoder/compressed_stream.h"
#include "decoder/exif_properties.h"
#include "decoder/ffmpeg_log.h"
#include "decoder/image_properties.h"
#include "decoder/image_status.h"
#include "decoder/item_bytes.h"
#include "decoder/media_demux.h"
#include "decoder/media_description.h"
#include "decoder/pdf_document.h"
#include "decoder/pdf_structure.h"
#include "decoder/picture_preview.h"
#include "decoder/pixel_fingerprint.h"
#include "platform/sha256.h"

namespace lumenscribe::decoder {

namespace {

using namespace platform::decoder;

#ifdef LUMENSCRIBE_DECODER_TEST_HOOKS
void crashOnMarker(const ItemBytes& item) {
  const auto head = item.read(0, 64);
  if (!head) return;
  const std::string_view text(reinterpret_cast<const char*>(head->data()), head->size());
  if (text.find(kTestCrashMarker) != std::string_view::npos) ::raise(SIGSEGV);
}

int errorOf(int result) { return result < 0 ? errno : 0; }

ConfinementProbe probeConfinement(std::string_view readablePath) {
  ConfinementProbe probe;
  const std::string scratch = "/tmp/lumenscribe-probe-" + std::to_string(::getpid());
  const int written = ::open(scratch.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  probe.openForWriting = errorOf(written);
  if (written >= 0) {
    ::close(written);
    ::unlink(scratch.c_str());
  }
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  probe.createSocket = errorOf(socket);
  if (socket >= 0) ::close(socket);
  // Should this succeed, the worker becomes /bin/true and the engine sees it vanish.
  char program[] = "/bin/true";
  char* const arguments[] = {program, nullptr};
  probe.execute = errorOf(::execve(program, arguments, environ));
  probe.killParent = errorOf(::kill(::getppid(), 0));
  const std::string path(readablePath);
  const int read = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  probe.readOutsideAllowed = errorOf(read);
  if (read >= 0) ::close(read);
  return probe;
}

bool allocate(std::int64_t mebibytes) {
  constexpr std::size_t kMiB = 1024 * 1024;
  std::vector<char> block(
      static_cast<std::size_t>(std::clamp<std::int64_t>(mebibytes, 0, 1 << 20)) * kMiB);
  for (std::size_t i = 0; i < block.size(); i += 4096) block[i] = 1;
  return !block.empty();
}
#endif

Reply ok(const auto& value) {
  Writer out;
  write(out, value);
  return {ReplyStatus::ok, std::move(out).data()};
}

// When a whole-file check must answer with what it has, as the engine asked.
std::chrono::steady_clock::time_point deadlineOf(const CheckBudget& budget) {
  return std::chrono::steady_clock::now() + std::chrono::milliseconds(budget.milliseconds);
}

Reply serve(RequestKind kind, Reader& in, const ItemBytes& item, const SendChunk& sendChunk) {
  const Reply bad{ReplyStatus::badRequest, {}};
#ifdef LUMENSCRIBE_DECODER_TEST_HOOKS
  if (item.fd >= 0) crashOnMarker(item);
#endif
  switch (kind) {
    case RequestKind::imageStatus:
      if (!in.finished() || item.fd < 0) return bad;
      return ok(decodeImageStatus(item));
    case RequestKind::pdfFacts:
      if (!in.finished() || item.fd < 0) return bad;
      return ok(openPdf(item));
    case RequestKind::pdfAnalysis: {
      const auto range = readPageRange(in);
      if (!range || !in.finished() || item.fd < 0) return bad;
      return ok(analyzePdf(item, *range));
    }
    case RequestKind::pdfFirstPage:
    case RequestKind::picturePreview: {
      const auto box = readPreviewBox(in);
      if (!box || !in.finished() || item.fd < 0) return bad;
      return ok(kind == RequestKind::pdfFirstPage ? renderPdfFirstPage(item, *box)
                                                  : renderPicturePreview(item, *box));
    }
    case RequestKind::imageProperties:
      if (!in.finished() || item.fd < 0) return bad;
      return ok(readImageProperties(item));
    case RequestKind::pixelFingerprint:
      if (!in.finished() || item.fd < 0) return bad;
      return ok(computePixelFingerprint(item));
    case RequestKind::cleanCopySource:
      if (!in.finished() || item.fd < 0) return bad;
      return ok(readCleanCopySource(item));
    case RequestKind::cleanCopy: {
      const auto request = readCleanCopyRequest(in);
      if (!request || !in.finished() || item.fd < 0) return bad;
      OutputSink out(sendChunk);
      return ok(writeCleanCopy(item, *request, out));
    }
    case RequestKind::pdfStructure: {
      const auto budget = readCheckBudget(in);
      if (!budget || !in.finished() || item.fd < 0) return bad;
      return ok(checkPdfStructure(item, deadlineOf(*budget)));
    }
    case RequestKind::compressedStream: {
      const auto budget = readCheckBudget(in);
      const auto format = readCompressedFormat(in);
      if (!budget || !format || !in.finished() || item.fd < 0) return bad;
      return ok(testCompressedStream(item, *format, deadlineOf(*budget)));
    }
    case RequestKind::mediaPackets: {
      const auto budget = readCheckBudget(in);
      if (!budget || !in.finished() || item.fd < 0) return bad;
      return ok(demuxEveryPacket(item, deadlineOf(*budget)));
    }
    case RequestKind::mediaDescription:
      if (!in.finished() || item.fd < 0) return bad;
      return ok(describeMedia(item));
#ifdef LUMENSCRIBE_DECODER_TEST_HOOKS
    case RequestKind::testProbeConfinement: {
      const std::string path = in.text(4096);
      if (!in.finished()) return bad;
      return ok(probeConfinement(path));
    }
    case RequestKind::testAllocate: {
      const std::int64_t mebibytes = in.i64();
      if (!in.finished()) return bad;
      Writer out;
      out.u8(allocate(mebibytes));
      return {ReplyStatus::ok, std::move(out).data()};
    }
#endif
    default: return {ReplyStatus::unknownRequest, {}};
  }
}

}  // namespace

void initialiseDecoders() {
  initialiseVips();
  initialiseExiv2();
  // poppler keeps no global state worth settling; opening nothing silences its log.
  openPdf(ItemBytes{});
  silenceFfmpegLog();
  // OpenSSL sets itself up on first use; that happens here, before the system-call filter.
  platform::Sha256().update({});
}

Reply handleRequest(std::uint16_t kind, std::span<const std::byte> payload, int item,
                    const SendChunk& sendChunk) {
  try {
    Reader in(payload);
    const std::int64_t size = in.i64();
    if (!in.ok() || size < 0) return {ReplyStatus::badRequest, {}};
    return serve(static_cast<RequestKind>(kind), in, ItemBytes{item, size}, sendChunk);
  } catch (...) {
    // Out of memory under the worker's limit, or a library's exception.
    return {ReplyStatus::failed, {}};
  }
}

}  // namespace lumenscribe::decoder
