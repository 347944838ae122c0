// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace lumenscribe::platform {

/// What opening a PDF tells (poppler-cpp). A document locked by a user password is
/// reported encrypted and locked, and nothing else of it is touched.
struct PdfOpenFacts {
  bool encrypted = false;
  bool locked = false;
  int pageCount = 0;
};

/// Nothing when poppler cannot open the document at all.
std::optional<PdfOpenFacts> openPdf(const std::filesystem::path& path);

/// 8-bit RGBA pixels, rows top to bottom, no padding.
struct RgbaImage {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> pixels;
};

/// Page 0 rendered to fit within maxWidth x maxHeight, aspect kept; nothing when the
/// document cannot be opened, is locked or has no pages.
std::optional<RgbaImage> renderPdfFirstPage(const std::filesystem::path& path, int maxWidth,
                                            int maxHeight);

}  // namespace lumenscribe::platform
