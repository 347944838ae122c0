// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/pdf_document.h"

#include <poppler-document.h>
#include <poppler-global.h>

#include <exception>
#include <memory>
#include <mutex>
#include <string>

namespace lumenscribe::platform {

namespace {

void silencePopplerErrors() {
  static std::once_flag once;
  std::call_once(once, [] {
    // Damaged files make poppler complain on stderr; what matters reaches the result.
    poppler::set_debug_error_function([](const std::string&, void*) {}, nullptr);
  });
}

}  // namespace

std::optional<PdfOpenFacts> openPdf(const std::filesystem::path& path) {
  silencePopplerErrors();
  try {
    const std::unique_ptr<poppler::document> document(
        poppler::document::load_from_file(path.string()));
    if (!document) return std::nullopt;
    PdfOpenFacts facts;
    // A document locked by a user password says it is not encrypted, and asking it for
    // its pages crashes poppler 22.12: a locked document is answered from the lock alone.
    if (document->is_locked()) {
      facts.encrypted = true;
      facts.locked = true;
      return facts;
    }
    facts.encrypted = document->is_encrypted();
    facts.pageCount = document->pages();
    return facts;
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

}  // namespace lumenscribe::platform
