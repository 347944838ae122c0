// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/pdf_structure.h"

#include <poppler-document.h>
#include <poppler-global.h>
#include <poppler-page.h>

#include <algorithm>
#include <exception>
#include <limits>
#include <memory>
#include <mutex>
#include <optional>
#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFLogger.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>
#include <string>

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

// poppler has one error handler for the whole process; a check counts through it while it
// runs and leaves it silent afterwards.
std::mutex& popplerMutex() {
  static std::mutex mutex;
  return mutex;
}

class PopplerErrorCount {
 public:
  PopplerErrorCount() {
    poppler::set_debug_error_function(
        [](const std::string&, void* count) { ++*static_cast<std::int32_t*>(count); }, &count_);
  }
  ~PopplerErrorCount() {
    poppler::set_debug_error_function([](const std::string&, void*) {}, nullptr);
  }
  PopplerErrorCount(const PopplerErrorCount&) = delete;
  PopplerErrorCount& operator=(const PopplerErrorCount&) = delete;

  std::int32_t count() const { return count_; }

 private:
  std::int32_t count_ = 0;
};

// Opens the document and loads every page with its content; false when the time ran out.
bool checkWithPoppler(std::span<const char> bytes, Clock::time_point deadline,
                      PdfStructureFacts& facts) {
  const std::lock_guard lock(popplerMutex());
  const PopplerErrorCount errors;
  const std::unique_ptr<poppler::document> document(
      poppler::document::load_from_raw_data(bytes.data(), static_cast<int>(bytes.size())));
  if (!document) return true;
  facts.open.opened = true;
  // Asking a document locked by a user password for its pages crashes poppler 22.12.
  if (document->is_locked()) {
    facts.open.encrypted = true;
    facts.open.locked = true;
    return true;
  }
  facts.open.encrypted = document->is_encrypted();
  facts.open.pageCount = std::max(0, document->pages());
  std::int32_t unloadable = 0;
  for (int index = 0; index < facts.open.pageCount; ++index) {
    if (Clock::now() >= deadline) return false;
    const std::unique_ptr<poppler::page> page(document->create_page(index));
    if (!page) {
      ++unloadable;
      continue;
    }
    // Its content is read as a reader reads it to show the page: a broken operator or a
    // stream that ends too soon is reported on the way.
    (void)page->text();
  }
  facts.readerErrors = errors.count() + unloadable;
  return true;
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

// What `qpdf --check` does, its output discarded: false when the time ran out.
bool checkWithQpdf(std::span<const char> bytes, Clock::time_point deadline,
                   PdfStructureFacts& facts) {
  QPDF pdf;
  const auto logger = QPDFLogger::create();
  logger->setInfo(logger->discard());
  logger->setWarn(logger->discard());
  logger->setError(logger->discard());
  pdf.setLogger(logger);
  pdf.setSuppressWarnings(true);
  bool inTime = true;
  try {
    pdf.processMemoryFile("item", bytes.data(), bytes.size());
    // Its findings are reported as warnings, whatever their kind.
    if (pdf.isLinearized() && !pdf.checkLinearization()) ++facts.checkerWarnings;

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
        ++facts.checkerErrors;
      }
    }
  } catch (const OutOfTime&) {
    inTime = false;
  } catch (const std::bad_alloc&) {
    throw;  // the worker answers "failed" for what ran out of memory
  } catch (const std::exception&) {
    ++facts.checkerErrors;
  }
  facts.checkerWarnings =
      saturated(static_cast<std::size_t>(facts.checkerWarnings) + pdf.numWarnings());
  return inTime;
}

}  // namespace

PdfStructureFacts checkPdfStructure(const ItemBytes& item, Clock::time_point deadline) {
  PdfStructureFacts facts;
  const std::optional<MappedItem> mapping = MappedItem::map(item);
  if (!mapping || mapping->bytes().size() > static_cast<std::size_t>(INT32_MAX)) return facts;
  const std::span<const char> bytes = mapping->bytes();

  if (!checkWithPoppler(bytes, deadline, facts)) return facts;
  if (!facts.open.opened || facts.open.locked) {
    facts.complete = true;
    return facts;
  }
  facts.complete = checkWithQpdf(bytes, deadline, facts);
  return facts;
}

}  // namespace lumenscribe::decoder
