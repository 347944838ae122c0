// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "decoder/item_bytes.h"
#include "platform/decoder_protocol.h"

namespace lumenscribe::decoder {

using platform::decoder::PageRange;
using platform::decoder::PageSize;
using platform::decoder::PdfAnalysis;
using platform::decoder::PdfOpenFacts;
using platform::decoder::PreviewBox;
using platform::decoder::RgbaImage;

/// Opens the item as a PDF (poppler) and tells whether it is locked, encrypted and how many
/// pages it has; `opened` false when poppler cannot open it at all.
PdfOpenFacts openPdf(const ItemBytes& item);

/// Everything the PDF analysis needs of the item: the facts openPdf gives, the info
/// dictionary's seven attributes, and of the pages in `range`: how many carry text, page 0's
/// media box and their texts joined with line feeds. Of a locked document only the lock is
/// reported: it is never opened with a password, and poppler 22.12 crashes when asked for
/// anything else of it.
PdfAnalysis analyzePdf(const ItemBytes& item, PageRange range = {});

/// Page 0 rendered to fit the box, aspect kept; nothing when the document cannot be
/// opened, is locked or has no pages.
std::optional<RgbaImage> renderPdfFirstPage(const ItemBytes& item, const PreviewBox& box);

}  // namespace lumenscribe::decoder
