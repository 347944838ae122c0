// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// What poppler reads for the engine; the rows made of it are checked in the PDF analysis's
// tests, through the worker.
#include "decoder/pdf_document.h"

#include <gtest/gtest.h>

#include "decoder_test_support.h"
#include "test_files.h"

namespace lumenscribe::decoder {
namespace {

using test::kHealthFixtures;
using test::OpenFixture;

const std::filesystem::path kPdfFixtures = lumenscribe::test::kData / "pdf";

PdfAnalysis analyzeFixture(const std::filesystem::path& path) {
  return analyzePdf(OpenFixture(path).bytes());
}

TEST(OpenPdf, reportsLockEncryptionAndPagesWithoutTouchingALockedDocument) {
  const std::pair<const char*, PdfOpenFacts> cases[] = {
      {"three_pages.pdf", {true, false, false, 3}},
      {"encrypted_owner_password_only.pdf", {true, true, false, 1}},
      // poppler calls this document unencrypted and would crash on its pages.
      {"encrypted_user_password.pdf", {true, true, true, 0}},
      {"not_a_pdf.pdf", {}},
      {"report.pdf", {}}};
  for (const auto& [file, facts] : cases) {
    EXPECT_EQ(openPdf(OpenFixture(kHealthFixtures / file).bytes()), facts) << file;
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

TEST(AnalyzePdf, readsTheTextOfEveryPageJoinedWithLineFeedsAndPageZerosBox) {
  const PdfAnalysis letter = analyzeFixture(kPdfFixtures / "letter_contacts.pdf");
  EXPECT_EQ(letter.creationDate, 1710495000);  // 2024-03-15 09:30:00 UTC
  EXPECT_EQ(letter.text,
            "Contact Ann.Lee@Example.ORG or see https://example.org/q1\nCall 555-123-4567 "
            "today\nServer 192.168.1.10, not 10.0.0.256");
  EXPECT_TRUE(letter.textComplete);

  const struct {
    const char* file;
    int textPages;
    const char* text;
  } cases[] = {
      // An empty page and a page with only an image have no text of their own.
      {"four_pages_two_with_text.pdf", 2, "Page one\n\n\nPage four"},
      {"four_pages_one_with_text.pdf", 1, "Page one\n\n\n"},
      {"four_pages_no_text.pdf", 0, "\n\n\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.file);
    const PdfAnalysis pdf = analyzeFixture(kPdfFixtures / c.file);
    EXPECT_EQ(pdf.pageCount, 4);
    EXPECT_EQ(pdf.textPageCount, c.textPages);
    EXPECT_EQ(pdf.text, c.text);
    EXPECT_EQ(pdf.firstPageSize, (PageSize{842, 595}));
  }
  // Protected by an owner password only: read through the encryption.
  EXPECT_EQ(analyzeFixture(kHealthFixtures / "encrypted_owner_password_only.pdf").text,
            "Lumenscribe");
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
  EXPECT_EQ(pdf.title, "Unicode \U0001F600");  // UTF-16BE with a surrogate pair
  EXPECT_FALSE(pdf.producer);
  EXPECT_FALSE(pdf.creationDate);  // "not a date"
  // Every byte on which PDFDocEncoding and Latin-1 differ, as pdfinfo reads it.
  const std::string title =
      lumenscribe::test::fileBytes(kPdfFixtures / "info_pdfdoc_bytes.title.txt");
  ASSERT_FALSE(title.empty());
  EXPECT_EQ(analyzeFixture(kPdfFixtures / "info_pdfdoc_bytes.pdf").title, title);
}

}  // namespace
}  // namespace lumenscribe::decoder
