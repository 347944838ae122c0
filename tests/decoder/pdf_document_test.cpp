// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/pdf_document.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "decoder_test_support.h"

namespace lumenscribe::decoder {
namespace {

using test::kHealthFixtures;
using test::OpenFixture;

const std::filesystem::path kPdfFixtures = std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "pdf";

PdfAnalysis analyzeFixture(const std::filesystem::path& path) {
  return analyzePdf(OpenFixture(path).bytes());
}

TEST(OpenPdf, reportsLockEncryptionAndPagesWithoutTouchingALockedDocument) {
  struct Case {
    const char* file;
    PdfOpenFacts facts;
  };
  const Case cases[] = {
      {"one_page.pdf", {true, false, false, 1}},
      {"three_pages.pdf", {true, false, false, 3}},
      {"encrypted_owner_password_only.pdf", {true, true, false, 1}},
      // poppler calls this document unencrypted and would crash on its pages.
      {"encrypted_user_password.pdf", {true, true, true, 0}},
      {"zero_pages.pdf", {true, false, false, 0}},
      {"not_a_pdf.pdf", {}},
      {"report.pdf", {}},
      {"empty.jpg", {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    EXPECT_EQ(openPdf(OpenFixture(kHealthFixtures / c.file).bytes()), c.facts);
  }
  EXPECT_EQ(openPdf(ItemBytes{-1, 100}), PdfOpenFacts{});
}

TEST(PdfFirstPage, rendersPageZeroToFitTheBoxAndNothingOfALockedDocument) {
  const auto page =
      renderPdfFirstPage(OpenFixture(kHealthFixtures / "one_page.pdf").bytes(), {120, 90});
  ASSERT_TRUE(page);
  EXPECT_LE(page->width, 120);
  EXPECT_LE(page->height, 90);
  EXPECT_TRUE(page->width >= 119 || page->height >= 89);
  EXPECT_EQ(page->pixels.size(), static_cast<std::size_t>(page->width) * page->height * 4);

  for (const char* file : {"encrypted_user_password.pdf", "zero_pages.pdf", "not_a_pdf.pdf"}) {
    SCOPED_TRACE(file);
    EXPECT_FALSE(renderPdfFirstPage(OpenFixture(kHealthFixtures / file).bytes(), {120, 90}));
  }
}

TEST(AnalyzePdf, readsTheInfoDictionaryPageZerosBoxAndTheTextOfEveryPage) {
  const PdfAnalysis letter = analyzeFixture(kPdfFixtures / "letter_contacts.pdf");
  EXPECT_TRUE(letter.opened);
  EXPECT_FALSE(letter.encrypted);
  EXPECT_FALSE(letter.locked);
  EXPECT_EQ(letter.pageCount, 1);
  EXPECT_EQ(letter.textPageCount, 1);
  EXPECT_EQ(letter.title, "Quarterly Report");
  EXPECT_EQ(letter.author, "Ann Lee");
  EXPECT_EQ(letter.subject, "Figures for Q1");
  EXPECT_EQ(letter.creator, "Writer");
  EXPECT_EQ(letter.producer, "qpdf fixture");
  EXPECT_EQ(letter.creationDate, 1710495000);      // 2024-03-15 09:30:00 UTC
  EXPECT_EQ(letter.modificationDate, 1710584100);  // 2024-03-16 10:15:00 UTC
  EXPECT_EQ(letter.firstPageSize, (PageSize{612, 792}));
  EXPECT_EQ(letter.text,
            "Contact Ann.Lee@Example.ORG or see https://example.org/q1\nCall 555-123-4567 "
            "today\nServer 192.168.1.10, not 10.0.0.256");
  EXPECT_TRUE(letter.textComplete);

  const PdfAnalysis a4 = analyzeFixture(kPdfFixtures / "a4_producer_only.pdf");
  EXPECT_EQ(a4.producer, "LibreOffice 7.4");
  EXPECT_FALSE(a4.title || a4.author || a4.subject || a4.creator || a4.creationDate ||
               a4.modificationDate);
  ASSERT_TRUE(a4.firstPageSize);
  EXPECT_NEAR(a4.firstPageSize->width, 595.28, 1e-9);
  EXPECT_NEAR(a4.firstPageSize->height, 841.89, 1e-9);
}

TEST(AnalyzePdf, countsPagesWithTextAndJoinsPageTextsWithLineFeeds) {
  struct Case {
    const char* file;
    int pages;
    int textPages;
    const char* text;
  };
  const Case cases[] = {
      // An empty page and a page with only an image have no text of their own.
      {"four_pages_two_with_text.pdf", 4, 2, "Page one\n\n\nPage four"},
      {"four_pages_one_with_text.pdf", 4, 1, "Page one\n\n\n"},
      {"four_pages_no_text.pdf", 4, 0, "\n\n\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    const PdfAnalysis pdf = analyzeFixture(kPdfFixtures / c.file);
    EXPECT_EQ(pdf.pageCount, c.pages);
    EXPECT_EQ(pdf.textPageCount, c.textPages);
    EXPECT_EQ(pdf.text, c.text);
    EXPECT_EQ(pdf.firstPageSize, (PageSize{842, 595}));
  }
}

TEST(AnalyzePdf, readsTheTextOfARangeOfPagesOnly) {
  const auto fixture = kPdfFixtures / "four_pages_two_with_text.pdf";
  const PdfAnalysis middle = analyzePdf(OpenFixture(fixture).bytes(), {1, 2});
  EXPECT_EQ(middle.pageCount, 4);
  EXPECT_EQ(middle.textPageCount, 0);
  EXPECT_FALSE(middle.firstPageSize);  // page 0 is not in the range
  EXPECT_EQ(middle.text, "\n");
  const PdfAnalysis tail = analyzePdf(OpenFixture(fixture).bytes(), {2, INT32_MAX});
  EXPECT_EQ(tail.textPageCount, 1);
  EXPECT_EQ(tail.text, "\nPage four");
  const PdfAnalysis past = analyzePdf(OpenFixture(fixture).bytes(), {9, 1});
  EXPECT_EQ(past.pageCount, 4);
  EXPECT_EQ(past.text, "");
  EXPECT_EQ(past.title, std::nullopt);
}

TEST(AnalyzePdf, decodesInfoStringsInEveryEncodingAPdfMayUse) {
  const PdfAnalysis pdf = analyzeFixture(kPdfFixtures / "info_encodings.pdf");
  EXPECT_EQ(pdf.title, "Unicode \U0001F600");           // UTF-16BE with a surrogate pair
  EXPECT_EQ(pdf.author, "Ren\u00E9 \u2122 Caf\u00E9");  // PDFDocEncoding
  EXPECT_EQ(pdf.subject, "Gr\u00FC\u00DFe");            // UTF-8 with its mark
  EXPECT_EQ(pdf.creator, "");                           // present, empty
  EXPECT_FALSE(pdf.producer);
  EXPECT_FALSE(pdf.creationDate);  // "not a date"

  // Every byte on which PDFDocEncoding and Latin-1 differ, as pdfinfo reads it.
  std::ifstream expected(kPdfFixtures / "info_pdfdoc_bytes.title.txt", std::ios::binary);
  const std::string title{std::istreambuf_iterator<char>(expected), {}};
  ASSERT_FALSE(title.empty());
  EXPECT_EQ(analyzeFixture(kPdfFixtures / "info_pdfdoc_bytes.pdf").title, title);
}

TEST(AnalyzePdf, reportsALockedDocumentAsEncryptedAndTouchesNothingElse) {
  struct Case {
    const char* file;
    PdfAnalysis expected;
  };
  PdfAnalysis locked;
  locked.opened = true;
  locked.encrypted = true;
  locked.locked = true;
  PdfAnalysis halfOpen;
  halfOpen.opened = true;
  const Case cases[] = {
      {"encrypted_user_password.pdf", locked},
      {"zero_pages.pdf", halfOpen},
      {"not_a_pdf.pdf", {}},
      {"report.pdf", {}},  // a ZIP archive
      {"empty.jpg", {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    EXPECT_EQ(analyzeFixture(kHealthFixtures / c.file), c.expected);
  }
  // Cut short: poppler opens what it can, which is no page at all.
  EXPECT_EQ(analyzeFixture(kPdfFixtures / "cut_at_60_percent.pdf"), halfOpen);

  // Protected by an owner password only: readable, and encrypted.
  const PdfAnalysis owner = analyzeFixture(kHealthFixtures / "encrypted_owner_password_only.pdf");
  EXPECT_TRUE(owner.encrypted);
  EXPECT_FALSE(owner.locked);
  EXPECT_EQ(owner.textPageCount, 1);
  EXPECT_EQ(owner.text, "Lumenscribe");
}

}  // namespace
}  // namespace lumenscribe::decoder
