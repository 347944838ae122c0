// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The PDF structure check (poppler, then qpdf) on any bytes, as the worker runs it.
// Seeds: tests/data/type_health/*.pdf, tests/data/health/*.pdf.
#include <chrono>

#include "decoder/pdf_structure.h"
#include "fuzz_item.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const lumenscribe::fuzz::FuzzItem item(data, size);
  try {
    lumenscribe::decoder::checkPdfStructure(
        item.bytes(), std::chrono::steady_clock::now() + std::chrono::seconds(5));
  } catch (const std::bad_alloc&) {
    // The worker answers "failed" for this, as handleRequest does.
  }
  return 0;
}
