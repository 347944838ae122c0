// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The checks that follow a file's content: every ZIP-based format, PDFs by poppler and qpdf,
// compressed streams, audio and video packets, and pictures no loader of ours reads.
#include <gtest/gtest.h>

#include "health/health_assessment.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

const std::filesystem::path kFixtures = test::kData / "type_health";
const std::string kIntactDetail = "Lumenscribe did not find an obvious structural problem.";
constexpr const char* kIntact = "Looks intact";
constexpr const char* kDamage = "Possible damage";
constexpr const char* kLimited = "Verification limited";

struct Case {
  const char* file;
  const char* verdict;
  const char* label;
  const char* value;
  const char* detailPart;  // a part of "File Health Detail" that says why; nothing: intact
};

void expectCases(std::span<const Case> cases) {
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    Accumulators accumulators;
    assessFileHealth(test::openedItem(kFixtures / c.file), test::sharedDecoder(), accumulators);
    const auto& rows = accumulators.sections.at(0).rows;
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0].value, c.verdict);
    EXPECT_EQ(rows[2].label, c.label);
    EXPECT_EQ(rows[2].value, c.value);
    const std::string& detail = accumulators.rawMetadata.at("File Health Detail");
    EXPECT_NE(detail.find(c.detailPart ? c.detailPart : kIntactDetail), std::string::npos)
        << detail;
  }
}

TEST(StructureChecks, eachFormatIsCheckedByItsOwnToolWhateverItsName) {
  const Case cases[] = {
      // unzip's exit status 1: warnings only, and every entry tested fine.
      {"prepended_bytes.zip", kIntact, "ZIP Structure", "Integrity test passed",
       "unzip only warned"},
      {"empty.zip", kIntact, "ZIP Structure", "Integrity test passed", "unzip only warned"},
      // Status 81: AES is a method unzip cannot test, which is no sign of damage.
      {"aes_encrypted.zip", kLimited, "ZIP Structure", "Unsupported compression", "cannot test"},
      // Every ZIP-based format gets the ZIP test, whatever its name.
      {"truncated.jar", kDamage, "ZIP Structure", "Integrity test failed", "truncated"},
      {"archive_named.docx", kIntact, "ZIP Structure", "Integrity test passed", nullptr},
      {"pdf_named.jpg", kIntact, "PDF Structure", "1 page readable", nullptr},
      {"blank_before_header.pdf", kIntact, "PDF Structure", "1 page readable", nullptr},
      // A table readers rebuild is a warning: intact, and said so.
      {"no_xref_table.pdf", kIntact, "PDF Structure", "1 page readable",
       "noted 3 warnings about problems that PDF readers work around"},
      {"page_tree_loop.pdf", kDamage, "PDF Structure", "Structural errors",
       "checking every page, object and stream found 3 errors"},
      // poppler's own report counts: qpdf alone would only warn.
      {"header_without_dash.pdf", kDamage, "PDF Structure", "Structural errors", "found 1 error."},
      {"intact.gz", kIntact, "Compressed Stream", "Decompression test passed", nullptr},
      {"gzip_named.txt", kIntact, "Compressed Stream", "Decompression test passed", nullptr},
      {"two_members.gz", kIntact, "Compressed Stream", "Decompression test passed", nullptr},
      {"trailing_zeros.gz", kIntact, "Compressed Stream", "Decompression test passed",
       "bytes after its end"},
      {"truncated.gz", kDamage, "Compressed Stream", "Unexpected end of data",
       "gzip data ends before its last block"},
      {"bad_checksum.gz", kDamage, "Compressed Stream", "Decompression test failed", "checksum"},
      {"intact.xz", kIntact, "Compressed Stream", "Decompression test passed", nullptr},
      {"truncated.xz", kDamage, "Compressed Stream", "Unexpected end of data", "xz"},
      {"intact.bz2", kIntact, "Compressed Stream", "Decompression test passed", nullptr},
      {"corrupt.bz2", kDamage, "Compressed Stream", "Decompression test failed", "bzip2"},
      {"intact.zst", kIntact, "Compressed Stream", "Decompression test passed", nullptr},
      {"truncated.zst", kDamage, "Compressed Stream", "Unexpected end of data", "Zstandard"},
      // A compressed SVG is checked as the gzip stream it is.
      {"square.svgz", kIntact, "Compressed Stream", "Decompression test passed", nullptr},
      {"tone.ogg", kIntact, "Media Structure", "88 packets read", nullptr},
      {"tone.flac", kIntact, "Media Structure", "10 packets read", nullptr},
      {"tone.mp3", kIntact, "Media Structure", "40 packets read", nullptr},
      {"generic_brand.m4a", kIntact, "Media Structure", "45 packets read", nullptr},
      {"clip.mp4", kIntact, "Media Structure", "10 packets read", nullptr},
      {"bad_page_checksum.ogg", kDamage, "Media Structure", "Checksum failures",
       "checksum failure"},
      {"truncated.mp4", kDamage, "Media Structure", "Read errors", "may be truncated or damaged"},
      {"checkers.xbm", kLimited, "Image Structure", "Unknown type",
       "could not determine a supported image type"},
      {"orange.sgi", kLimited, "Image Structure", "Unknown type",
       "could not determine a supported image type"},
      {"photo.heic", kIntact, "Image Structure", "Complete", nullptr},
      {"photo.avif", kIntact, "Image Structure", "Complete", nullptr},
      {"jpeg_named.png", kIntact, "Image Structure", "Complete", nullptr},
      {"truncated_png_named.txt", kDamage, "Image Structure", "Incomplete", "incomplete"},
  };
  expectCases(cases);
}

TEST(StructureChecks, aCheckThatCannotRunLimitsTheVerdict) {
  platform::DecoderClient missing({"/nonexistent/lumenscribe-decoder", std::chrono::seconds(5)});
  const std::pair<std::filesystem::path, const char*> cases[] = {
      {kFixtures / "intact.gz", "Compressed Stream"},
      {kFixtures / "tone.ogg", "Media Structure"},
      {kFixtures / "no_xref_table.pdf", "PDF Structure"},
      {test::kData / "health" / "intact.jpg", "Image Structure"}};
  for (const auto& [file, label] : cases) {
    SCOPED_TRACE(file);
    Accumulators accumulators;
    assessFileHealth(test::openedItem(file), missing, accumulators);
    const auto& rows = accumulators.sections.at(0).rows;
    EXPECT_EQ(rows.at(0).value, kLimited);
    EXPECT_EQ(rows.at(2).label, label);
    EXPECT_EQ(rows.at(2).value, "Could not check");
  }
}

}  // namespace
}  // namespace lumenscribe
