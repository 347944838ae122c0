// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/pdf_document.h"

#include <gtest/gtest.h>

#include "decoder_test_support.h"

namespace lumenscribe::decoder {
namespace {

using test::kHealthFixtures;
using test::OpenFixture;

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

}  // namespace
}  // namespace lumenscribe::decoder
