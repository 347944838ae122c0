// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The decoder worker's request handling as the worker runs it, on hostile files: the input is
// the file, handed over as a descriptor like the engine's opened item, and every request
// (image status, picture preview, PDF facts, PDF first page) is made of it, so that seed
// files of any format reach the decoder that reads them.
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <span>

#include "decoder/request_handler.h"
#include "fuzz_check.h"
#include "platform/decoder_protocol.h"
#include "platform/file_descriptor.h"

namespace {

using namespace lumenscribe;
using platform::decoder::RequestKind;

constexpr RequestKind kKinds[] = {RequestKind::imageStatus, RequestKind::picturePreview,
                                  RequestKind::pdfFacts, RequestKind::pdfFirstPage};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  decoder::initialiseDecoders();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto file = std::as_bytes(std::span(data, size));
  const platform::UniqueFd fd(::memfd_create("item", MFD_CLOEXEC));
  if (!fd || ::write(fd.get(), file.data(), file.size()) != static_cast<ssize_t>(file.size())) {
    return 0;
  }
  for (const RequestKind kind : kKinds) {
    platform::decoder::Writer request;
    request.i64(static_cast<std::int64_t>(file.size()));
    if (kind == RequestKind::picturePreview || kind == RequestKind::pdfFirstPage) {
      write(request, platform::decoder::PreviewBox{64, 48});
    }
    const decoder::Reply reply =
        decoder::handleRequest(static_cast<std::uint16_t>(kind), request.data(), fd.get());
    if (reply.status != platform::decoder::ReplyStatus::ok) continue;

    // Whatever the worker answers must be what the engine's reader accepts.
    platform::decoder::Reader in(reply.payload);
    bool parsed = false;
    switch (kind) {
      case RequestKind::imageStatus:
        parsed = platform::decoder::readImageDecodeStatus(in).has_value();
        break;
      case RequestKind::pdfFacts:
        parsed = platform::decoder::readPdfOpenFacts(in).has_value();
        break;
      default: parsed = platform::decoder::readPreview(in, {64, 48}).has_value(); break;
    }
    FUZZ_CHECK(parsed && in.finished());
  }
  return 0;
}
