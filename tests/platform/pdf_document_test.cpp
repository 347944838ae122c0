// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/pdf_document.h"

#include <gtest/gtest.h>

namespace lumenscribe::platform {
namespace {

const std::filesystem::path kFixtures = std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health";

TEST(OpenPdf, reportsLockEncryptionAndPagesWithoutTouchingALockedDocument) {
  struct Case {
    const char* file;
    std::optional<PdfOpenFacts> facts;
  };
  const Case cases[] = {
      {"one_page.pdf", PdfOpenFacts{false, false, 1}},
      {"three_pages.pdf", PdfOpenFacts{false, false, 3}},
      {"encrypted_owner_password_only.pdf", PdfOpenFacts{true, false, 1}},
      // poppler calls this document unencrypted and would crash on its pages.
      {"encrypted_user_password.pdf", PdfOpenFacts{true, true, 0}},
      {"zero_pages.pdf", PdfOpenFacts{false, false, 0}},
      {"not_a_pdf.pdf", std::nullopt},
      {"report.pdf", std::nullopt},
      {"empty.jpg", std::nullopt},
      {"missing.pdf", std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    const auto facts = openPdf(kFixtures / c.file);
    ASSERT_EQ(facts.has_value(), c.facts.has_value());
    if (!facts) continue;
    EXPECT_EQ(facts->encrypted, c.facts->encrypted);
    EXPECT_EQ(facts->locked, c.facts->locked);
    EXPECT_EQ(facts->pageCount, c.facts->pageCount);
  }
}

}  // namespace
}  // namespace lumenscribe::platform
