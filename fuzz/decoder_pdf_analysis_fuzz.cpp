// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT

// The PDF analysis request as the decoder worker serves it: the bytes as a file behind a
// descriptor, the request payload, poppler over the mapping, and the reply the engine reads
// back, which must parse and hold together.
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
using namespace lumenscribe::platform::decoder;

// The input as a file of its own, as the engine hands one to the worker.
platform::UniqueFd fileHolding(const std::uint8_t* data, std::size_t size) {
  platform::UniqueFd file(::memfd_create("pdf-analysis-fuzz", MFD_CLOEXEC));
  FUZZ_CHECK(file);
  std::size_t written = 0;
  while (written < size) {
    const ssize_t count = ::write(file.get(), data + written, size - written);
    FUZZ_CHECK(count > 0);
    written += static_cast<std::size_t>(count);
  }
  return file;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  decoder::initialiseDecoders();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const platform::UniqueFd file = fileHolding(data, size);
  Writer request;
  request.i64(static_cast<std::int64_t>(size));
  write(request, PageRange{});
  const decoder::Reply reply = decoder::handleRequest(
      static_cast<std::uint16_t>(RequestKind::pdfAnalysis), request.data(), file.get());
  // The worker may fail on a file (out of memory under its limit), never answer nonsense.
  if (reply.status == ReplyStatus::failed) return 0;
  FUZZ_CHECK(reply.status == ReplyStatus::ok);
  FUZZ_CHECK(reply.payload.size() <= kMaxReplyPayload);
  Reader in(reply.payload);
  const auto analysis = readPdfAnalysis(in);
  FUZZ_CHECK(analysis && in.finished());

  if (!analysis->opened) FUZZ_CHECK(*analysis == PdfAnalysis{});
  if (analysis->locked) {
    // A locked document is reported from its lock alone.
    PdfAnalysis locked;
    locked.opened = locked.encrypted = locked.locked = true;
    FUZZ_CHECK(*analysis == locked);
  }
  FUZZ_CHECK(analysis->textPageCount <= analysis->pageCount);
  if (analysis->textPageCount > 0 && analysis->textComplete) FUZZ_CHECK(!analysis->text.empty());
  FUZZ_CHECK(!analysis->firstPageSize || analysis->pageCount > 0);
  return 0;
}
