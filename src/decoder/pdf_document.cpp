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
#include <ctime>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "decoder/pdf_text.h"

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

std::span<const std::uint16_t> unitsOf(const poppler::ustring& text) {
  return {reinterpret_cast<const std::uint16_t*>(text.data()), text.size()};
}

// Present only when the dictionary has the key; a value that is not a string reads as empty.
std::optional<std::string> infoEntry(const poppler::document& document,
                                     const std::vector<std::string>& keys, const char* key) {
  if (std::find(keys.begin(), keys.end(), key) == keys.end()) return std::nullopt;
  std::string text = infoText(unitsOf(document.info_key(key)));
  truncateText(text, platform::decoder::kMaxPdfInfoText);
  return text;
}

// Present only when the entry reads as a date (info_date_t gives -1 otherwise).
std::optional<std::int64_t> infoDate(const poppler::document& document,
                                     const std::vector<std::string>& keys, const char* key) {
  if (std::find(keys.begin(), keys.end(), key) == keys.end()) return std::nullopt;
  const time_t date = document.info_date_t(key);
  if (date == static_cast<time_t>(-1)) return std::nullopt;
  return static_cast<std::int64_t>(date);
}

void readInfo(const poppler::document& document, PdfAnalysis& analysis) {
  const std::vector<std::string> keys = document.info_keys();
  analysis.title = infoEntry(document, keys, "Title");
  analysis.author = infoEntry(document, keys, "Author");
  analysis.subject = infoEntry(document, keys, "Subject");
  analysis.creator = infoEntry(document, keys, "Creator");
  analysis.producer = infoEntry(document, keys, "Producer");
  analysis.creationDate = infoDate(document, keys, "CreationDate");
  analysis.modificationDate = infoDate(document, keys, "ModDate");
}

std::optional<PageSize> mediaBoxSize(const poppler::page& page) {
  const poppler::rectf box = page.page_rect(poppler::media_box);
  const double width = std::abs(box.width());
  const double height = std::abs(box.height());
  if (!std::isfinite(width) || !std::isfinite(height)) return std::nullopt;
  return PageSize{width, height};
}

// A page's text in reading order, as pdftotext gives it by default, without the line feeds
// and the form feed poppler ends every page with.
std::string pageText(const poppler::page& page) {
  std::string text = utf8FromUtf16(
      unitsOf(page.text(poppler::rectf(), poppler::page::non_raw_non_physical_layout)));
  if (text.ends_with('\f')) text.pop_back();
  while (text.ends_with('\n')) text.pop_back();
  return text;
}

void readPages(const poppler::document& document, PageRange range, PdfAnalysis& analysis) {
  analysis.pageCount = std::max(0, document.pages());
  const int end = range.first + std::min(range.count, analysis.pageCount - range.first);
  for (int index = range.first; index < end; ++index) {
    // A page poppler cannot make counts as a page without text.
    const std::unique_ptr<poppler::page> page(document.create_page(index));
    const std::string text = page ? pageText(*page) : std::string();
    if (index == 0 && page) analysis.firstPageSize = mediaBoxSize(*page);
    if (hasVisibleText(text)) ++analysis.textPageCount;
    if (!analysis.textComplete) continue;
    const std::size_t separator = index > range.first ? 1 : 0;
    if (analysis.text.size() + separator + text.size() > platform::decoder::kMaxPdfText) {
      analysis.textComplete = false;
      continue;
    }
    if (separator != 0) analysis.text.push_back('\n');
    analysis.text.append(text);
  }
}

}  // namespace

// A library exception or running out of memory is left to the request handler, which
// answers that the work failed rather than that the document does not open.
PdfAnalysis analyzePdf(const ItemBytes& item, PageRange range) {
  PdfAnalysis analysis;
  const OpenDocument open = load(item);
  if (!open.document) return analysis;
  analysis.opened = true;
  if (open.document->is_locked()) {
    analysis.encrypted = true;
    analysis.locked = true;
    return analysis;
  }
  analysis.encrypted = open.document->is_encrypted();
  readInfo(*open.document, analysis);
  readPages(*open.document, range, analysis);
  return analysis;
}

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
