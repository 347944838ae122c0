// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/pdf_document.h"

#include <poppler-document.h>
#include <poppler-global.h>
#include <poppler-image.h>
#include <poppler-page-renderer.h>
#include <poppler-page.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <memory>
#include <mutex>
#include <string>

namespace lumenscribe::decoder {

namespace {

void silencePoppler() {
  static std::once_flag once;
  std::call_once(once, [] {
    // Damaged files make poppler complain on stderr; what matters reaches the result.
    poppler::set_debug_error_function([](const std::string&, void*) {}, nullptr);
  });
}

// The document over the mapped item; poppler reads the bytes in place, and the mapping
// outlives the document because it is declared first.
struct OpenDocument {
  std::optional<MappedItem> mapping;
  std::unique_ptr<poppler::document> document;
};

OpenDocument load(const ItemBytes& item) {
  silencePoppler();
  OpenDocument open;
  open.mapping = MappedItem::map(item);
  if (!open.mapping) return open;
  const auto bytes = open.mapping->bytes();
  if (bytes.size() > static_cast<std::size_t>(INT32_MAX)) return open;
  open.document.reset(
      poppler::document::load_from_raw_data(bytes.data(), static_cast<int>(bytes.size())));
  return open;
}

// Page boxes come from the file: refuse sizes that would make the scale meaningless.
bool usableExtent(double points) { return std::isfinite(points) && points >= 1.0 && points <= 1e6; }

// Rounding of the scale may give a pixel more than the box; that pixel is cut off.
std::optional<RgbaImage> toRgba(const poppler::image& image, const PreviewBox& box) {
  if (!image.is_valid() || image.format() != poppler::image::format_argb32) return std::nullopt;
  const int stride = image.bytes_per_row();
  if (image.width() <= 0 || image.height() <= 0 || stride < image.width() * 4) return std::nullopt;
  const int width = std::min(image.width(), box.maxWidth);
  const int height = std::min(image.height(), box.maxHeight);

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

PdfOpenFacts openPdf(const ItemBytes& item) {
  PdfOpenFacts facts;
  try {
    const OpenDocument open = load(item);
    if (!open.document) return facts;
    facts.opened = true;
    // A document locked by a user password says it is not encrypted, and asking it for
    // its pages crashes poppler 22.12: a locked document is answered from the lock alone.
    if (open.document->is_locked()) {
      facts.encrypted = true;
      facts.locked = true;
      return facts;
    }
    facts.encrypted = open.document->is_encrypted();
    facts.pageCount = std::max(0, open.document->pages());
    return facts;
  } catch (const std::exception&) {
    return PdfOpenFacts{};
  }
}

std::optional<RgbaImage> renderPdfFirstPage(const ItemBytes& item, const PreviewBox& box) {
  try {
    const OpenDocument open = load(item);
    // A locked document is left alone: not even its page count is read.
    if (!open.document || open.document->is_locked()) return std::nullopt;
    if (open.document->pages() < 1) return std::nullopt;
    const std::unique_ptr<poppler::page> page(open.document->create_page(0));
    if (!page) return std::nullopt;

    const poppler::rectf crop = page->page_rect(poppler::crop_box);
    double pageWidth = crop.width();
    double pageHeight = crop.height();
    const auto orientation = page->orientation();
    if (orientation == poppler::page::landscape || orientation == poppler::page::seascape) {
      std::swap(pageWidth, pageHeight);
    }
    if (!usableExtent(pageWidth) || !usableExtent(pageHeight)) return std::nullopt;

    const double scale = std::min(box.maxWidth / pageWidth, box.maxHeight / pageHeight);
    const double dpi = 72.0 * scale;
    poppler::page_renderer renderer;
    renderer.set_render_hints(poppler::page_renderer::antialiasing |
                              poppler::page_renderer::text_antialiasing |
                              poppler::page_renderer::text_hinting);
    renderer.set_image_format(poppler::image::format_argb32);
    renderer.set_paper_color(0xffffffff);
    return toRgba(renderer.render_page(page.get(), dpi, dpi), box);
  } catch (...) {
    return std::nullopt;
  }
}

}  // namespace lumenscribe::decoder
