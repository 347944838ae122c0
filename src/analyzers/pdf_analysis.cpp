// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/pdf_analysis.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "analyzers/content_patterns.h"
#include "core/metadata_value.h"
#include "platform/date_format.h"

namespace lumenscribe {

namespace {

using platform::decoder::PdfAnalysis;

std::string number(std::int64_t value) { return std::to_string(value); }

std::string yesNo(bool value) { return value ? "Yes" : "No"; }

std::string dateText(std::int64_t seconds) {
  return platform::mediumDateText(Timestamp(std::chrono::seconds(seconds)));
}

struct Provenance {
  bool hasAuthor = false;
  bool hasSoftware = false;
};

Provenance addDocumentSection(const PdfAnalysis& pdf, Accumulators& accumulators) {
  Provenance provenance;
  std::vector<InsightRow> rows;
  rows.emplace_back("Pages", number(pdf.pageCount));
  const auto add = [&](const char* label, const char* rawKey, const std::string& value) {
    rows.emplace_back(label, value);
    accumulators.setRaw(rawKey, value);
  };
  if (pdf.title) add("Title", "PDF Title", *pdf.title);
  if (pdf.author) {
    add("Author", "PDF Author", *pdf.author);
    provenance.hasAuthor = true;
  }
  if (pdf.subject) add("Subject", "PDF Subject", *pdf.subject);
  if (pdf.creator) {
    add("Creator", "PDF Creator", *pdf.creator);
    provenance.hasSoftware = true;
  }
  if (pdf.producer) {
    add("Producer", "PDF Producer", *pdf.producer);
    provenance.hasSoftware = true;
  }
  if (pdf.creationDate) add("Created", "PDF Created", dateText(*pdf.creationDate));
  if (pdf.modificationDate) add("Modified", "PDF Modified", dateText(*pdf.modificationDate));
  accumulators.setRaw("PDF Page Count", number(pdf.pageCount));
  accumulators.sections.emplace_back("Document", "doc.richtext.fill", std::move(rows));
  accumulators.summaryItems.emplace_back("Document");
  return provenance;
}

std::string textStructure(std::int32_t textPages, std::int32_t pages) {
  if (textPages == 0) return "No selectable text detected";
  // Less than half; exactly half counts as mixed.
  if (std::int64_t{textPages} * 2 < pages) return "Mostly image-based or scanned";
  if (textPages == pages) return "Selectable text on all pages";
  return "Mixed text and image/scanned pages";
}

void addStructureSection(const PdfAnalysis& pdf, Accumulators& accumulators) {
  std::vector<InsightRow> rows;
  rows.emplace_back("Encrypted", yesNo(pdf.encrypted));
  rows.emplace_back("Locked", yesNo(pdf.locked));
  rows.emplace_back("Pages with Text", number(pdf.textPageCount) + " of " + number(pdf.pageCount));
  if (pdf.firstPageSize) {
    const double width = pdf.firstPageSize->width;
    const double height = pdf.firstPageSize->height;
    char size[160];
    std::snprintf(size, sizeof size, "%.0f \u00D7 %.0f pt (%.2f \u00D7 %.2f in)", width, height,
                  width / 72, height / 72);
    const std::string orientation = width > height   ? "Landscape"
                                    : height > width ? "Portrait"
                                                     : "Square";
    rows.emplace_back("Page Size", size);
    rows.emplace_back("Orientation", orientation);
    accumulators.setRaw("PDF Page Width Points", compactNumberText(width));
    accumulators.setRaw("PDF Page Height Points", compactNumberText(height));
    accumulators.setRaw("PDF Orientation", orientation);
  }
  if (pdf.pageCount > 0) {
    const std::string structure = textStructure(pdf.textPageCount, pdf.pageCount);
    rows.emplace_back("Text Structure", structure);
    accumulators.setRaw("PDF Text-bearing Pages", number(pdf.textPageCount));
    accumulators.setRaw("PDF Text Structure", structure);
  }
  accumulators.setRaw("PDF Encrypted", yesNo(pdf.encrypted));
  accumulators.setRaw("PDF Locked", yesNo(pdf.locked));
  accumulators.sections.emplace_back("Document Structure", "rectangle.stack.fill", std::move(rows));
  accumulators.summaryItems.emplace_back("Document Structure");
}

void addProvenanceFindings(const PdfAnalysis& pdf, Provenance provenance,
                           Accumulators& accumulators) {
  if (pdf.encrypted || pdf.locked) {
    accumulators.findings.emplace_back(
        "PDF access restrictions are present",
        "This PDF is encrypted or locked. Lumenscribe can report that condition without "
        "attempting to bypass the document\u2019s protection.",
        PrivacyLevel::notice);
  }
  if (provenance.hasAuthor) {
    accumulators.findings.emplace_back(
        "Author identity is embedded",
        "This PDF contains author metadata that may identify who created or prepared the "
        "document.",
        PrivacyLevel::notice);
  }
  if (provenance.hasSoftware) {
    accumulators.findings.emplace_back(
        "PDF creation software is visible",
        "The PDF records creator or producer software information that may reveal part of its "
        "creation history.",
        PrivacyLevel::notice);
  }
}

struct ContentKind {
  std::int64_t ContentCounts::*count;
  const char* rowLabel;
  const char* rawKey;
  const char* title;
  const char* detailBefore;  // the count goes between the two halves
  const char* detailAfter;
  PrivacyLevel level;
};

// In the order of the rows and findings.
constexpr std::array<ContentKind, 4> kContentKinds = {{
    {&ContentCounts::emailAddresses, "Email Addresses", "PDF Content Email Addresses",
     "Email addresses are present in the PDF", "This document contains ",
     " email address reference(s). Lumenscribe reports the count without exposing the addresses "
     "in the summary.",
     PrivacyLevel::notice},
    {&ContentCounts::phoneNumbers, "Phone-like Numbers", "PDF Content Phone-like Numbers",
     "Phone-like numbers are present in the PDF", "This document contains ",
     " phone-number-like reference(s). Review before sharing if the PDF may contain personal "
     "contact information.",
     PrivacyLevel::notice},
    {&ContentCounts::ipAddresses, "IP Addresses", "PDF Content IP Addresses",
     "IP addresses are present in the PDF", "This document contains ",
     " IP address reference(s). Lumenscribe reports the count without exposing the actual values "
     "in the summary.",
     PrivacyLevel::notice},
    {&ContentCounts::webLinks, "Web Links", "PDF Content Web Links",
     "Web links are present in the PDF", "This document contains ",
     " web link(s). Lumenscribe has counted them but has not opened or visited them.",
     PrivacyLevel::neutral},
}};

void addContentAnalysis(const PdfAnalysis& pdf, Accumulators& accumulators) {
  // A document without any page text has no text, however many line feeds join its pages.
  if (pdf.textPageCount == 0 || pdf.text.empty()) return;
  const ContentCounts counts = countContentPatterns(pdf.text);
  std::vector<InsightRow> rows;
  for (const ContentKind& kind : kContentKinds) {
    const std::int64_t count = counts.*kind.count;
    accumulators.setRaw(kind.rawKey, number(count));
    if (count <= 0) continue;
    rows.emplace_back(kind.rowLabel, number(count));
    accumulators.findings.emplace_back(
        kind.title, kind.detailBefore + number(count) + kind.detailAfter, kind.level);
  }
  if (!pdf.textComplete) {
    accumulators.setRaw("PDF Content Analysis Error",
                        "The document's text is longer than Lumenscribe reads at once; the "
                        "counts cover its first " +
                            number(static_cast<std::int64_t>(pdf.text.size() / 1'000'000)) +
                            " MB.");
  }
  if (rows.empty()) return;
  accumulators.sections.emplace_back("PDF Content Analysis", "doc.text.magnifyingglass",
                                     std::move(rows));
  accumulators.summaryItems.emplace_back("PDF Content Analysis");
}

// Reading the text of a long document is most of the work, and it goes page by page: two
// workers read one half each, at once.
constexpr std::int32_t kPagesWorthSharing = 32;

// The two halves as one analysis of the whole document; nothing when they disagree on what
// they both read.
std::optional<PdfAnalysis> joined(PdfAnalysis first, const PdfAnalysis& second) {
  if (first.opened != second.opened || first.encrypted != second.encrypted ||
      first.locked != second.locked || first.pageCount != second.pageCount ||
      first.textPageCount > first.pageCount - second.textPageCount) {
    return std::nullopt;
  }
  first.textPageCount += second.textPageCount;
  first.text.reserve(first.text.size() + 1 + second.text.size());
  first.text += '\n';
  first.text += second.text;
  first.textComplete = first.textComplete && second.textComplete;
  return first;
}

Expected<PdfAnalysis> readDocument(const platform::OpenedItem& item,
                                   platform::DecoderClient& decoder) {
  const auto facts = decoder.pdfFacts(item);
  if (!facts || !facts->opened || facts->locked || facts->pageCount < kPagesWorthSharing) {
    return decoder.pdfAnalysis(item);
  }
  const std::int32_t half = facts->pageCount / 2;
  std::optional<Expected<PdfAnalysis>> secondHalf;
  Expected<PdfAnalysis> firstHalf = make_error_code(platform::DecoderError::stopped);
  {
    const std::jthread other([&]() noexcept {
      try {
        secondHalf.emplace(decoder.pdfAnalysis(item, {half, INT32_MAX}));
      } catch (const std::exception&) {
        secondHalf.emplace(make_error_code(platform::DecoderError::stopped));
      }
    });
    firstHalf = decoder.pdfAnalysis(item, {0, half});
  }
  if (!firstHalf) return firstHalf.error();
  if (!secondHalf) return make_error_code(platform::DecoderError::stopped);
  if (!*secondHalf) return secondHalf->error();
  auto whole = joined(std::move(*firstHalf), **secondHalf);
  if (!whole) return make_error_code(platform::DecoderError::stopped);
  return std::move(*whole);
}

}  // namespace

void analyzePDF(const platform::OpenedItem& item, platform::DecoderClient& decoder,
                Accumulators& accumulators) {
  if (!item.isReadable()) return;
  Expected<PdfAnalysis> pdf = make_error_code(platform::DecoderError::stopped);
  try {
    pdf = readDocument(item, decoder);
  } catch (const std::exception&) {
    // No memory or no thread for the second half: as if the reader had stopped.
  }
  if (!pdf) {
    accumulators.setRaw("PDF Analysis Error", pdf.error().message());
    return;
  }
  if (!pdf->opened) return;
  const Provenance provenance = addDocumentSection(*pdf, accumulators);
  addStructureSection(*pdf, accumulators);
  addProvenanceFindings(*pdf, provenance, accumulators);
  addContentAnalysis(*pdf, accumulators);
}

}  // namespace lumenscribe
