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
  EXPECT_EQ(test::block(result.sections, "Document"),
            "Pages: 1\nTitle: Quarterly Report\nAuthor: Ann Lee\nSubject: Figures for Q1\n"
            "Creator: Writer\nProducer: qpdf fixture\nCreated: Mar 15, 2024, 9:30:00\u202FAM\n"
            "Modified: Mar 16, 2024, 10:15:00\u202FAM\n");
  EXPECT_EQ(test::block(result.sections, "Document Structure"),
            "Encrypted: No\nLocked: No\nPages with Text: 1 of 1\n"
            "Page Size: 612 \u00D7 792 pt (8.50 \u00D7 11.00 in)\nOrientation: Portrait\n"
            "Text Structure: Selectable text on all pages\n");
  EXPECT_EQ(test::block(result.sections, "PDF Content Analysis"),
            "Email Addresses: 1\nPhone-like Numbers: 1\nIP Addresses: 1\nWeb Links: 1\n");
  // The document's rows have raw twins; the page, by its measures.
  EXPECT_EQ(test::block(result.rawMetadata),
            "PDF Author: Ann Lee\nPDF Content Email Addresses: 1\nPDF Content IP Addresses: 1\n"
            "PDF Content Phone-like Numbers: 1\nPDF Content Web Links: 1\n"
            "PDF Created: Mar 15, 2024, 9:30:00\u202FAM\nPDF Creator: Writer\n"
            "PDF Encrypted: No\nPDF Locked: No\nPDF Modified: Mar 16, 2024, 10:15:00\u202FAM\n"
            "PDF Orientation: Portrait\nPDF Page Count: 1\nPDF Page Height Points: 792\n"
            "PDF Page Width Points: 612\nPDF Producer: qpdf fixture\n"
            "PDF Subject: Figures for Q1\nPDF Text Structure: Selectable text on all pages\n"
            "PDF Text-bearing Pages: 1\nPDF Title: Quarterly Report\n");
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
  // Pages with text, page size, orientation and text structure, as the section's last rows.
  const std::pair<const char*, const char*> cases[] = {
      {"a4_producer_only.pdf",
       "1 of 1|595 × 842 pt (8.27 × 11.69 in)|Portrait|"
       "Selectable text on all pages"},
      {"four_pages_two_with_text.pdf",
       "2 of 4|842 × 595 pt (11.69 × 8.26 in)|Landscape|"
       "Mixed text and image/scanned pages"},
      {"four_pages_one_with_text.pdf",
       "1 of 4|842 × 595 pt (11.69 × 8.26 in)|Landscape|"
       "Mostly image-based or scanned"},
      {"four_pages_no_text.pdf",
       "0 of 4|842 × 595 pt (11.69 × 8.26 in)|Landscape|"
       "No selectable text detected"},
      {"square_page.pdf",
       "1 of 1|500 × 500 pt (6.94 × 6.94 in)|Square|"
       "Selectable text on all pages"},
  };
  for (const auto& [file, expected] : cases) {
    SCOPED_TRACE(file);
    const Accumulators result = analyze(kData / "pdf" / file);
    ASSERT_GE(result.sections.size(), 2u);
    const Rows rows = rowsOf(result.sections[1]);
    ASSERT_EQ(rows.size(), 6u);
    EXPECT_EQ(rows[2].second + "|" + rows[3].second + "|" + rows[4].second + "|" + rows[5].second,
              expected);
    EXPECT_EQ(result.rawMetadata.at("PDF Text-bearing Pages") + " of " +
                  result.rawMetadata.at("PDF Page Count") + "|" + rows[3].second + "|" +
                  result.rawMetadata.at("PDF Orientation") + "|" + rows[5].second,
              expected);
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
      test::block(result.sections, "Document"),
      "Pages: 1\nTitle: Unicode \U0001F600\nAuthor: René ™ Café\nSubject: Grüße\nCreator: \n");
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
  EXPECT_EQ(test::block(owner.sections, "Document Structure").substr(0, 26),
            "Encrypted: Yes\nLocked: No\n");
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
