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
#include <string>

#include "decoder/qpdf_check.h"

namespace lumenscribe::decoder {

namespace {

using Clock = std::chrono::steady_clock;

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

std::int32_t saturatedSum(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(
      std::min<std::int64_t>(std::int64_t{a} + b, std::numeric_limits<std::int32_t>::max()));
}

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
  facts.readerErrors = saturatedSum(errors.count(), unloadable);
  return true;
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
  const QpdfCheck check = checkWithQpdf(bytes.data(), bytes.size(), deadline);
  facts.checkerErrors = check.errors;
  facts.checkerWarnings = check.warnings;
  facts.complete = check.complete;
  return facts;
}

}  // namespace lumenscribe::decoder
