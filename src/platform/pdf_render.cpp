// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include <poppler-document.h>
#include <poppler-global.h>
#include <poppler-image.h>
#include <poppler-page-renderer.h>
#include <poppler-page.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <mutex>

#include "platform/pdf_document.h"

namespace lumenscribe::platform {

namespace {

void silencePoppler() {
  static std::once_flag once;
  std::call_once(
      once, [] { poppler::set_debug_error_function([](const std::string&, void*) {}, nullptr); });
}

// Page boxes come from the file: refuse sizes that would make the scale meaningless.
bool usableExtent(double points) { return std::isfinite(points) && points >= 1.0 && points <= 1e6; }

std::optional<RgbaImage> toRgba(const poppler::image& image) {
  if (!image.is_valid() || image.format() != poppler::image::format_argb32) return std::nullopt;
  const int width = image.width();
  const int height = image.height();
  const int stride = image.bytes_per_row();
  if (width <= 0 || height <= 0 || stride < width * 4) return std::nullopt;

  RgbaImage out;
  out.width = width;
  out.height = height;
  out.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
  const char* data = image.const_data();
  for (int y = 0; y < height; ++y) {
    const char* row = data + static_cast<std::ptrdiff_t>(y) * stride;
    std::uint8_t* target = out.pixels.data() + static_cast<std::size_t>(y) * width * 4;
    for (int x = 0; x < width; ++x) {
      std::uint32_t argb = 0;
      std::memcpy(&argb, row + static_cast<std::ptrdiff_t>(x) * 4, 4);
      target[x * 4 + 0] = static_cast<std::uint8_t>(argb >> 16);
      target[x * 4 + 1] = static_cast<std::uint8_t>(argb >> 8);
      target[x * 4 + 2] = static_cast<std::uint8_t>(argb);
      target[x * 4 + 3] = static_cast<std::uint8_t>(argb >> 24);
    }
  }
  return out;
}

}  // namespace

std::optional<RgbaImage> renderPdfFirstPage(const std::filesystem::path& path, int maxWidth,
                                            int maxHeight) {
  if (maxWidth <= 0 || maxHeight <= 0) return std::nullopt;
  try {
    silencePoppler();
    const std::unique_ptr<poppler::document> document(
        poppler::document::load_from_file(path.string()));
    // A locked document is left alone: not even its page count is read.
    if (!document || document->is_locked()) return std::nullopt;
    if (document->pages() < 1) return std::nullopt;
    const std::unique_ptr<poppler::page> page(document->create_page(0));
    if (!page) return std::nullopt;

    const poppler::rectf box = page->page_rect(poppler::crop_box);
    double pageWidth = box.width();
    double pageHeight = box.height();
    const auto orientation = page->orientation();
    if (orientation == poppler::page::landscape || orientation == poppler::page::seascape) {
      std::swap(pageWidth, pageHeight);
    }
    if (!usableExtent(pageWidth) || !usableExtent(pageHeight)) return std::nullopt;

    const double scale = std::min(maxWidth / pageWidth, maxHeight / pageHeight);
    const double dpi = 72.0 * scale;
    poppler::page_renderer renderer;
    renderer.set_render_hints(poppler::page_renderer::antialiasing |
                              poppler::page_renderer::text_antialiasing |
                              poppler::page_renderer::text_hinting);
    renderer.set_image_format(poppler::image::format_argb32);
    renderer.set_paper_color(0xffffffff);
    const poppler::image image = renderer.render_page(page.get(), dpi, dpi);
    return toRgba(image);
  } catch (...) {
    return std::nullopt;
  }
}

}  // namespace lumenscribe::platform
