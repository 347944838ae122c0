// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/qpdf_check.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <new>
#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFLogger.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

namespace lumenscribe::decoder {

namespace {

using Clock = std::chrono::steady_clock;

// Thrown from inside qpdf's traversal when the check has used its time.
struct OutOfTime : std::exception {
  const char* what() const noexcept override { return "the check's time budget ran out"; }
};

void checkDeadline(Clock::time_point deadline) {
  if (Clock::now() >= deadline) throw OutOfTime();
}

// Where QPDFWriter's output goes: nowhere, after a look at the clock.
class DiscardUntil final : public Pipeline {
 public:
  explicit DiscardUntil(Clock::time_point deadline)
      : Pipeline("lumenscribe discard", nullptr), deadline_(deadline) {}
  void write(unsigned char const* /*data*/, size_t /*length*/) override {
    checkDeadline(deadline_);
  }
  void finish() override {}

 private:
  Clock::time_point deadline_;
};

class DiscardContents final : public QPDFObjectHandle::ParserCallbacks {
 public:
  explicit DiscardContents(Clock::time_point deadline) : deadline_(deadline) {}
  void handleObject(QPDFObjectHandle) override {
    if (++objects_ % 4096 == 0) checkDeadline(deadline_);
  }
  void handleEOF() override {}

 private:
  Clock::time_point deadline_;
  std::uint64_t objects_ = 0;
};

std::int32_t saturated(std::size_t count) {
  return static_cast<std::int32_t>(
      std::min<std::size_t>(count, std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

QpdfCheck checkWithQpdf(const char* data, std::size_t size, Clock::time_point deadline) {
  QpdfCheck check;
  QPDF pdf;
  const auto logger = QPDFLogger::create();
  logger->setInfo(logger->discard());
  logger->setWarn(logger->discard());
  logger->setError(logger->discard());
  pdf.setLogger(logger);
  pdf.setSuppressWarnings(true);
  std::size_t linearizationWarnings = 0;
  check.complete = true;
  try {
    pdf.processMemoryFile("item", data, size);
    // Its findings are reported as warnings, whatever their kind.
    if (pdf.isLinearized() && !pdf.checkLinearization()) ++linearizationWarnings;

    // Writing the file to nowhere with every stream decoded reads every object.
    DiscardUntil discard(deadline);
    QPDFWriter writer(pdf);
    writer.setOutputPipeline(&discard);
    writer.setDecodeLevel(qpdf_dl_all);
    writer.setCompressStreams(false);
    writer.setPreserveEncryption(false);
    writer.setStaticID(true);  // nothing is kept, so no random identifier is needed
    writer.write();

    DiscardContents contents(deadline);
    for (QPDFPageObjectHelper& page : QPDFPageDocumentHelper(pdf).getAllPages()) {
      checkDeadline(deadline);
      try {
        page.parseContents(&contents);
      } catch (const QPDFExc&) {
        ++check.errors;
      }
    }
  } catch (const OutOfTime&) {
    check.complete = false;
  } catch (const std::bad_alloc&) {
    throw;  // the worker answers "failed" for what ran out of memory
  } catch (const std::exception&) {
    ++check.errors;
  }
  check.warnings = saturated(linearizationWarnings + pdf.numWarnings());
  return check;
}

}  // namespace lumenscribe::decoder
