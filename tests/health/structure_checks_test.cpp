// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The checks that follow a file's content: every ZIP-based format, PDFs by poppler and qpdf,
// compressed streams, audio and video packets, and pictures no loader of ours reads.
#include <gtest/gtest.h>

#include "health/health_assessment.h"
#include "test_files.h"

namespace lumenscribe {
namespace {

const std::filesystem::path kFixtures =
    std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "type_health";
const std::string kIntactDetail = "Lumenscribe did not find an obvious structural problem.";

struct Case {
  const char* file;
  const char* verdict;
  const char* label;
  const char* value;
  const char* detailPart;  // a part of "File Health Detail" that says why
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
    EXPECT_NE(detail.find(c.detailPart), std::string::npos) << detail;
  }
}

TEST(StructureChecks, zipExitStatusesAreReadAsUnzipDocumentsThem) {
  const Case cases[] = {
      // Status 1: warnings only, and every entry tested fine.
      {"prepended_bytes.zip", "Looks intact", "ZIP Structure", "Integrity test passed",
       "unzip only warned"},
      {"empty.zip", "Looks intact", "ZIP Structure", "Integrity test passed", "unzip only warned"},
      // Status 81: AES is a method unzip cannot test, which is no sign of damage.
      {"aes_encrypted.zip", "Verification limited", "ZIP Structure", "Unsupported compression",
       "cannot test"},
      // Every ZIP-based format gets the ZIP test, whatever its name.
      {"truncated.jar", "Possible damage", "ZIP Structure", "Integrity test failed", "truncated"},
      {"truncated.docx", "Possible damage", "ZIP Structure", "Integrity test failed", "truncated"},
      {"truncated.apk", "Possible damage", "ZIP Structure", "Integrity test failed", "truncated"},
      {"truncated.epub", "Possible damage", "ZIP Structure", "Integrity test failed", "truncated"},
      {"archive_named.docx", "Looks intact", "ZIP Structure", "Integrity test passed",
       kIntactDetail.c_str()},
  };
  expectCases(cases);
}

TEST(StructureChecks, pdfsAreCheckedByReaderAndCheckerWhateverTheirName) {
  const Case cases[] = {
      {"pdf_named.jpg", "Looks intact", "PDF Structure", "1 page readable", kIntactDetail.c_str()},
      {"blank_before_header.pdf", "Looks intact", "PDF Structure", "1 page readable",
       kIntactDetail.c_str()},
      // A table readers rebuild is a warning: intact, and said so.
      {"no_xref_table.pdf", "Looks intact", "PDF Structure", "1 page readable",
       "noted 3 warnings about problems that PDF readers work around"},
      {"page_tree_loop.pdf", "Possible damage", "PDF Structure", "Structural errors",
       "checking every page, object and stream found 3 errors"},
      // poppler's own report counts: qpdf alone would only warn.
      {"header_without_dash.pdf", "Possible damage", "PDF Structure", "Structural errors",
       "found 1 error."},
  };
  expectCases(cases);
}

TEST(StructureChecks, compressedStreamsAreDecompressedInFull) {
  const Case cases[] = {
      {"intact.gz", "Looks intact", "Compressed Stream", "Decompression test passed",
       kIntactDetail.c_str()},
      {"gzip_named.txt", "Looks intact", "Compressed Stream", "Decompression test passed",
       kIntactDetail.c_str()},
      {"two_members.gz", "Looks intact", "Compressed Stream", "Decompression test passed",
       kIntactDetail.c_str()},
      {"trailing_zeros.gz", "Looks intact", "Compressed Stream", "Decompression test passed",
       "bytes after its end"},
      {"truncated.gz", "Possible damage", "Compressed Stream", "Unexpected end of data",
       "gzip data ends before its last block"},
      {"bad_checksum.gz", "Possible damage", "Compressed Stream", "Decompression test failed",
       "checksum"},
      {"intact.xz", "Looks intact", "Compressed Stream", "Decompression test passed",
       kIntactDetail.c_str()},
      {"truncated.xz", "Possible damage", "Compressed Stream", "Unexpected end of data", "xz"},
      {"intact.bz2", "Looks intact", "Compressed Stream", "Decompression test passed",
       kIntactDetail.c_str()},
      {"corrupt.bz2", "Possible damage", "Compressed Stream", "Decompression test failed", "bzip2"},
      {"intact.zst", "Looks intact", "Compressed Stream", "Decompression test passed",
       kIntactDetail.c_str()},
      {"truncated.zst", "Possible damage", "Compressed Stream", "Unexpected end of data",
       "Zstandard"},
      // A compressed SVG is checked as the gzip stream it is.
      {"square.svgz", "Looks intact", "Compressed Stream", "Decompression test passed",
       kIntactDetail.c_str()},
  };
  expectCases(cases);
}

TEST(StructureChecks, everyMediaPacketIsRead) {
  const Case cases[] = {
      {"tone.ogg", "Looks intact", "Media Structure", "88 packets read", kIntactDetail.c_str()},
      {"tone.flac", "Looks intact", "Media Structure", "10 packets read", kIntactDetail.c_str()},
      {"tone.mp3", "Looks intact", "Media Structure", "40 packets read", kIntactDetail.c_str()},
      {"generic_brand.m4a", "Looks intact", "Media Structure", "45 packets read",
       kIntactDetail.c_str()},
      {"clip.mp4", "Looks intact", "Media Structure", "10 packets read", kIntactDetail.c_str()},
      {"bad_page_checksum.ogg", "Possible damage", "Media Structure", "Checksum failures",
       "checksum failure"},
      {"truncated.mp4", "Possible damage", "Media Structure", "Read errors",
       "may be truncated or damaged"},
  };
  expectCases(cases);
}

TEST(StructureChecks, picturesNoLoaderOfOursReadsAreLimitedNotDamaged) {
  const Case cases[] = {
      {"checkers.xbm", "Verification limited", "Image Structure", "Unknown type",
       "could not determine a supported image type"},
      {"checkers.xpm", "Verification limited", "Image Structure", "Unknown type",
       "could not determine a supported image type"},
      {"orange.sgi", "Verification limited", "Image Structure", "Unknown type",
       "could not determine a supported image type"},
      {"photo.heic", "Looks intact", "Image Structure", "Complete", kIntactDetail.c_str()},
      {"photo.avif", "Looks intact", "Image Structure", "Complete", kIntactDetail.c_str()},
      {"jpeg_named.png", "Looks intact", "Image Structure", "Complete", kIntactDetail.c_str()},
      {"truncated_png_named.txt", "Possible damage", "Image Structure", "Incomplete", "incomplete"},
  };
  expectCases(cases);
}

TEST(StructureChecks, aCheckThatCannotRunLimitsTheVerdict) {
  platform::DecoderClient missing({"/nonexistent/lumenscribe-decoder", std::chrono::seconds(5)});
  const std::pair<const char*, const char*> cases[] = {
      {"intact.gz", "Compressed Stream"},
      {"tone.ogg", "Media Structure"},
      {"no_xref_table.pdf", "PDF Structure"},
  };
  for (const auto& [file, label] : cases) {
    SCOPED_TRACE(file);
    Accumulators accumulators;
    assessFileHealth(test::openedItem(kFixtures / file), missing, accumulators);
    const auto& rows = accumulators.sections.at(0).rows;
    EXPECT_EQ(rows.at(0).value, "Verification limited");
    EXPECT_EQ(rows.at(2).label, label);
    EXPECT_EQ(rows.at(2).value, "Could not check");
  }
}

}  // namespace
}  // namespace lumenscribe
