// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/pdf_analysis.h"

#include <gtest/gtest.h>

#include "test_files.h"

namespace lumenscribe {
namespace {

using test::Rows;
using test::titlesOf;

const std::filesystem::path& kData = test::kData;

Accumulators analyze(const std::filesystem::path& file) {
  Accumulators accumulators;
  analyzePDF(test::openedItem(file), test::sharedDecoder(), accumulators);
  return accumulators;
}

Rows rowsOf(const InsightSection& section) { return test::rowsOf({section}, section.title); }

TEST(PdfAnalysis, reportsPropertiesStructureAndContactCountsOfALetterPage) {
  const Accumulators result = analyze(kData / "pdf/letter_contacts.pdf");
  ASSERT_EQ(titlesOf(result.sections),
            (std::vector<std::string>{"Document", "Document Structure", "PDF Content Analysis"}));
  EXPECT_EQ(result.summaryItems, titlesOf(result.sections));
  // The tests run with LC_ALL=C (en_US dates) and TZ=UTC.
  EXPECT_EQ(test::lines(result.sections, "Document"),
            (test::Lines{"Pages: 1", "Title: Quarterly Report", "Author: Ann Lee",
                         "Subject: Figures for Q1", "Creator: Writer", "Producer: qpdf fixture",
                         "Created: Mar 15, 2024, 9:30:00\u202FAM",
                         "Modified: Mar 16, 2024, 10:15:00\u202FAM"}));
  EXPECT_EQ(test::lines(result.sections, "Document Structure"),
            (test::Lines{"Encrypted: No", "Locked: No", "Pages with Text: 1 of 1",
                         "Page Size: 612 \u00D7 792 pt (8.50 \u00D7 11.00 in)",
                         "Orientation: Portrait", "Text Structure: Selectable text on all pages"}));
  EXPECT_EQ(test::lines(result.sections, "PDF Content Analysis"),
            (test::Lines{"Email Addresses: 1", "Phone-like Numbers: 1", "IP Addresses: 1",
                         "Web Links: 1"}));
  // The document's rows have raw twins; the page, by its measures.
  EXPECT_EQ(
      test::lines(result.rawMetadata),
      (test::Lines{"PDF Author: Ann Lee", "PDF Content Email Addresses: 1",
                   "PDF Content IP Addresses: 1", "PDF Content Phone-like Numbers: 1",
                   "PDF Content Web Links: 1", "PDF Created: Mar 15, 2024, 9:30:00\u202FAM",
                   "PDF Creator: Writer", "PDF Encrypted: No", "PDF Locked: No",
                   "PDF Modified: Mar 16, 2024, 10:15:00\u202FAM", "PDF Orientation: Portrait",
                   "PDF Page Count: 1", "PDF Page Height Points: 792", "PDF Page Width Points: 612",
                   "PDF Producer: qpdf fixture", "PDF Subject: Figures for Q1",
                   "PDF Text Structure: Selectable text on all pages", "PDF Text-bearing Pages: 1",
                   "PDF Title: Quarterly Report"}));

  ASSERT_EQ(
      titlesOf(result.findings),
      (std::vector<std::string>{
          "Author identity is embedded", "PDF creation software is visible",
          "Email addresses are present in the PDF", "Phone-like numbers are present in the PDF",
          "IP addresses are present in the PDF", "Web links are present in the PDF"}));
  EXPECT_NE(result.findings[2].detail.find("contains 1 email"), std::string::npos);
  EXPECT_EQ(result.findings[2].level, PrivacyLevel::notice);
  EXPECT_EQ(result.findings[5].level, PrivacyLevel::neutral);
}

TEST(PdfAnalysis, describesPageSizeOrientationAndTextStructure) {
  struct Case {
    const char* file;
    const char* pagesWithText;
    const char* pageSize;
    const char* orientation;
    const char* structure;
  };
  const Case cases[] = {
      {"a4_producer_only.pdf", "1 of 1", "595 \u00D7 842 pt (8.27 \u00D7 11.69 in)", "Portrait",
       "Selectable text on all pages"},
      {"four_pages_two_with_text.pdf", "2 of 4", "842 \u00D7 595 pt (11.69 \u00D7 8.26 in)",
       "Landscape", "Mixed text and image/scanned pages"},
      {"four_pages_one_with_text.pdf", "1 of 4", "842 \u00D7 595 pt (11.69 \u00D7 8.26 in)",
       "Landscape", "Mostly image-based or scanned"},
      {"four_pages_no_text.pdf", "0 of 4", "842 \u00D7 595 pt (11.69 \u00D7 8.26 in)", "Landscape",
       "No selectable text detected"},
      {"square_page.pdf", "1 of 1", "500 \u00D7 500 pt (6.94 \u00D7 6.94 in)", "Square",
       "Selectable text on all pages"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    const Accumulators result = analyze(kData / "pdf" / c.file);
    ASSERT_GE(result.sections.size(), 2u);
    const Rows rows = rowsOf(result.sections[1]);
    ASSERT_EQ(rows.size(), 6u);
    EXPECT_EQ(rows[2].second, c.pagesWithText);
    EXPECT_EQ(rows[3].second, c.pageSize);
    EXPECT_EQ(rows[4].second, c.orientation);
    EXPECT_EQ(rows[5].second, c.structure);
    EXPECT_EQ(result.rawMetadata.at("PDF Orientation"), c.orientation);
    EXPECT_EQ(result.rawMetadata.at("PDF Text-bearing Pages") + " of " +
                  result.rawMetadata.at("PDF Page Count"),
              c.pagesWithText);
  }

  // A4 in its exact points; a producer alone is software, not an author.
  const Accumulators a4 = analyze(kData / "pdf/a4_producer_only.pdf");
  EXPECT_EQ(a4.rawMetadata.at("PDF Page Width Points"), "595.28");
  EXPECT_EQ(a4.rawMetadata.at("PDF Page Height Points"), "841.89");
  EXPECT_EQ(titlesOf(a4.findings), std::vector<std::string>{"PDF creation software is visible"});
  // Text without contact data: zero counts in raw metadata, but no section of its own.
  EXPECT_EQ(titlesOf(a4.sections), (std::vector<std::string>{"Document", "Document Structure"}));
  EXPECT_EQ(a4.rawMetadata.at("PDF Content Web Links"), "0");

  // No text at all: no content analysis, not even its raw entries.
  const Accumulators blank = analyze(kData / "pdf/four_pages_no_text.pdf");
  EXPECT_EQ(blank.rawMetadata.count("PDF Content Email Addresses"), 0u);
  EXPECT_TRUE(blank.findings.empty());
}

TEST(PdfAnalysis, showsInfoStringsInAnyEncodingAndSkipsAnUnreadableDate) {
  const Accumulators result = analyze(kData / "pdf/info_encodings.pdf");
  EXPECT_EQ(
      test::lines(result.sections, "Document"),
      (test::Lines{"Pages: 1", "Title: Unicode \U0001F600", "Author: Ren\u00E9 \u2122 Caf\u00E9",
                   "Subject: Gr\u00FC\u00DFe", "Creator: "}));
  EXPECT_EQ(titlesOf(result.findings),
            (std::vector<std::string>{"Author identity is embedded",
                                      "PDF creation software is visible"}));
}

TEST(PdfAnalysis, reportsProtectionWithoutAPasswordAndSkipsWhatDoesNotOpen) {
  const Accumulators locked = analyze(kData / "health/encrypted_user_password.pdf");
  ASSERT_EQ(titlesOf(locked.sections),
            (std::vector<std::string>{"Document", "Document Structure"}));
  EXPECT_EQ(rowsOf(locked.sections[0]), (Rows{{"Pages", "0"}}));
  EXPECT_EQ(rowsOf(locked.sections[1]),
            (Rows{{"Encrypted", "Yes"}, {"Locked", "Yes"}, {"Pages with Text", "0 of 0"}}));
  EXPECT_EQ(titlesOf(locked.findings),
            std::vector<std::string>{"PDF access restrictions are present"});

  const Accumulators owner = analyze(kData / "health/encrypted_owner_password_only.pdf");
  EXPECT_EQ(rowsOf(owner.sections.at(1)).at(0),
            (std::pair<std::string, std::string>{"Encrypted", "Yes"}));
  EXPECT_EQ(rowsOf(owner.sections.at(1)).at(1),
            (std::pair<std::string, std::string>{"Locked", "No"}));
  EXPECT_EQ(owner.findings.at(0).title, "PDF access restrictions are present");

  // No pages: no size, orientation or text structure.
  for (const char* file : {"health/zero_pages.pdf", "pdf/cut_at_60_percent.pdf"}) {
    SCOPED_TRACE(file);
    const Accumulators empty = analyze(kData / file);
    ASSERT_EQ(titlesOf(empty.sections),
              (std::vector<std::string>{"Document", "Document Structure"}));
    EXPECT_EQ(rowsOf(empty.sections[1]),
              (Rows{{"Encrypted", "No"}, {"Locked", "No"}, {"Pages with Text", "0 of 0"}}));
    EXPECT_EQ(empty.rawMetadata.count("PDF Text Structure"), 0u);
  }

  // A text file and a ZIP archive named .pdf: nothing at all.
  for (const char* file : {"health/not_a_pdf.pdf", "health/report.pdf"}) {
    SCOPED_TRACE(file);
    const Accumulators nothing = analyze(kData / file);
    EXPECT_TRUE(nothing.sections.empty());
    EXPECT_TRUE(nothing.rawMetadata.empty());
    EXPECT_TRUE(nothing.findings.empty());
    EXPECT_TRUE(nothing.summaryItems.empty());
  }
}

TEST(PdfAnalysis, readsALongDocumentInTwoHalvesAsOne) {
  // Pages 0, 2, ..., 38, 19 and 39 have text; the two addresses are on pages 0 and 39, and
  // "555-123" on page 19 and "-4567" on page 20 are no phone number across a line feed.
  const Accumulators result = analyze(kData / "pdf/forty_pages.pdf");
  ASSERT_EQ(titlesOf(result.sections),
            (std::vector<std::string>{"Document", "Document Structure", "PDF Content Analysis"}));
  EXPECT_EQ(rowsOf(result.sections[1]).at(2),
            (std::pair<std::string, std::string>{"Pages with Text", "22 of 40"}));
  EXPECT_EQ(rowsOf(result.sections[1]).at(3).second, "612 \u00D7 792 pt (8.50 \u00D7 11.00 in)");
  EXPECT_EQ(rowsOf(result.sections[2]), (Rows{{"Email Addresses", "2"}}));
  EXPECT_EQ(result.rawMetadata.at("PDF Content Phone-like Numbers"), "0");
}

TEST(PdfAnalysis, turnsADecoderThatStopsIntoARawEntry) {
  test::TempDir dir;
  const auto file = dir.write("crash.pdf", "LUMENSCRIBE TEST: CRASH THE DECODER\n%PDF-1.7\n");
  const Accumulators result = analyze(file);
  EXPECT_TRUE(result.sections.empty());
  EXPECT_EQ(result.rawMetadata,
            (RawMetadata{{"PDF Analysis Error", "The decoder stopped on this file."}}));
}

}  // namespace
}  // namespace lumenscribe
