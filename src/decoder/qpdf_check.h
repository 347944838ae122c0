// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

// Kept to C++17 (see src/CMakeLists.txt): qpdf 11's headers do not build as C++20 with
// clang 14 and libstdc++ 12, and the fuzz build uses clang.
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace lumenscribe::decoder {

/// What `qpdf --check` would say of a PDF: errors (what stopped it reading a part) and
/// warnings (what it worked around), and whether it got to the end before `deadline`.
struct QpdfCheck {
  std::int32_t errors = 0;
  std::int32_t warnings = 0;
  bool complete = false;
};

/// Reads every object of the PDF in `data`, decodes every stream it can and parses every
/// page's content, writing nothing anywhere.
QpdfCheck checkWithQpdf(const char* data, std::size_t size,
                        std::chrono::steady_clock::time_point deadline);

}  // namespace lumenscribe::decoder
