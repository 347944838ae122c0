// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/zip_listing.h"

#include <gtest/gtest.h>

namespace lumenscribe {
namespace {

// What Debian's unzip prints for `unzip -l` of a small archive.
constexpr std::string_view kListing =
    "Archive:  /dev/fd/3\n"
    "  Length      Date    Time    Name\n"
    "---------  ---------- -----   ----\n"
    "        0  2024-05-01 12:00   docs/\n"
    "        8  2024-05-01 12:00   docs/readme.txt\n"
    "        6  2024-05-01 12:00   My Photo 1.jpg\n"
    "        2  2024-05-01 12:00   myfiles/a.txt\n"
    "1073741824  2024-05-01 12:00   zeros.bin\n"
    "---------                     -------\n"
    "1073741838                     4 files\n";

TEST(ZipListing, readsALineIntoLengthAndNameOrSkipsIt) {
  struct Case {
    std::string_view line;
    std::optional<ZipListingEntry> entry;
  };
  const Case cases[] = {
      {"        8  2024-05-01 12:00   docs/readme.txt", ZipListingEntry{8, "docs/readme.txt"}},
      {"        0  2024-05-01 12:00   docs/", ZipListingEntry{0, "docs/"}},
      // Blanks inside a name stay; so do blanks in front of it, past the column's three.
      {"        6  2024-05-01 12:00   My Photo 1.jpg", ZipListingEntry{6, "My Photo 1.jpg"}},
      {"        6  2024-05-01 12:00     two blanks", ZipListingEntry{6, "  two blanks"}},
      {"        6  2024-05-01 12:00   \ttab first", ZipListingEntry{6, "\ttab first"}},
      {"\t 3  2024-05-01 12:00   trailing blanks  \t", ZipListingEntry{3, "trailing blanks"}},
      {"1073741824  2024-05-01 12:00   big", ZipListingEntry{1073741824, "big"}},
      {"        5 date time x", ZipListingEntry{5, "x"}},  // fewer blanks than the padding
      {"+5  2024-05-01 12:00   signed", ZipListingEntry{5, "signed"}},
      {"        1  2024-05-01 12:00   caf\u00E9 \u2603.txt",
       ZipListingEntry{1, "caf\u00E9 \u2603.txt"}},
      // Headers, rules, the footer and whatever else does not fit an entry.
      {"Archive:  /dev/fd/3", std::nullopt},
      {"  Length      Date    Time    Name", std::nullopt},
      {"---------  ---------- -----   ----", std::nullopt},
      {"1073741838                     4 files", std::nullopt},
      {"        2  2024-05-01 12:00   myfiles/a.txt", std::nullopt},  // holds "files"
      {"        2                     1 file", std::nullopt},
      {"", std::nullopt},
      {"   \t ", std::nullopt},
      {"        2  2024-05-01 12:00", std::nullopt},
      {"        2  2024-05-01 12:00   ", std::nullopt},
      {"       2x  2024-05-01 12:00   name", std::nullopt},
      {"+-2  2024-05-01 12:00   name", std::nullopt},
      {"99999999999999999999  2024-05-01 12:00   huge", std::nullopt},
      {"a zipfile comment with four words", std::nullopt},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(parseZipListingLine(c.line), c.entry) << c.line;
  }
}

TEST(ZipListing, countsEntriesTheSameHoweverTheOutputArrives) {
  ZipListingReader whole;
  whole.feed(kListing);
  whole.finish();
  ZipListingReader byteByByte;
  for (char c : kListing) byteByByte.feed(std::string_view(&c, 1));
  byteByByte.finish();

  EXPECT_EQ(whole.entryCount(), 4);
  EXPECT_EQ(byteByByte.summary(), whole.summary());
  const ContainerSummary& summary = whole.summary();
  EXPECT_EQ(summary.fileCount, 3);
  EXPECT_EQ(summary.folderCount, 1);
  EXPECT_EQ(summary.totalBytes, 8 + 6 + 1073741824);
  EXPECT_EQ(summary.sampleItems, (std::vector<std::string>{"📁 docs/", "docs/readme.txt",
                                                           "My Photo 1.jpg", "zeros.bin"}));
  EXPECT_TRUE(whole.isValidUtf8());
  EXPECT_TRUE(whole.listedMoreThanArchiveLine());

  // A last line without a newline is counted at the end.
  ZipListingReader unended;
  unended.feed("        4  2024-05-01 12:00   last.txt");
  EXPECT_EQ(unended.entryCount(), 0);
  unended.finish();
  EXPECT_EQ(unended.entryCount(), 1);

  // An empty archive lists nothing but its name.
  ZipListingReader empty;
  empty.feed("Archive:  /dev/fd/3\n");
  empty.finish();
  EXPECT_FALSE(empty.listedMoreThanArchiveLine());
  EXPECT_EQ(empty.summary(), ContainerSummary{});
}

TEST(ZipListing, everyNewlineCharacterEndsALine) {
  // A name holding one is cut there, as any line would be: the rest fits no entry.
  for (std::string_view newline : {"\n", "\r", "\r\n", "\v", "\f", "\u0085", "\u2028", "\u2029"}) {
    SCOPED_TRACE(testing::PrintToString(std::string(newline)));
    ZipListingReader reader;
    reader.feed("        1  2024-05-01 12:00   first" + std::string(newline) + "second.txt" +
                std::string(newline) + "        2  2024-05-01 12:00   third\n");
    reader.finish();
    EXPECT_EQ(reader.summary().sampleItems, (std::vector<std::string>{"first", "third"}));
  }
}

TEST(ZipListing, outputThatIsNotUtf8AnywhereMakesTheListingUnreadable) {
  for (std::string_view bad :
       {"caf\xE9", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82", "ok\xFF"}) {
    ZipListingReader reader;
    reader.feed(kListing.substr(0, 40));
    reader.feed("        1  2024-05-01 12:00   " + std::string(bad) + "\n");
    reader.feed(kListing.substr(40));
    reader.finish();
    EXPECT_FALSE(reader.isValidUtf8()) << testing::PrintToString(std::string(bad));
  }
}

TEST(ZipListing, judgesEntriesByTheirPathAsAnArchiveHoldsThem) {
  struct Case {
    std::string_view name;
    std::int64_t hidden, executable, nested, image, doubleExtension;
  };
  // (The archive fixture covers hidden entries, executables and nested archives.)
  const Case cases[] = {
      {"scripts.d/run.sh.txt", 0, 0, 0, 0, 1},  // the folder's dot is not the name's
      {"v1.2/readme", 0, 0, 0, 0, 0},
      {"backups/site.tar.gz", 0, 0, 1, 0, 1},
      {"cache/.thumbs/IMG.JPEG", 1, 0, 0, 1, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    ContainerSummary summary;
    addZipEntry({10, c.name}, summary);
    EXPECT_EQ(summary.fileCount, 1);
    EXPECT_EQ(summary.hiddenCount, c.hidden);
    EXPECT_EQ(summary.executableCount, c.executable);
    EXPECT_EQ(summary.nestedArchiveCount, c.nested);
    EXPECT_EQ(summary.imageCount, c.image);
    EXPECT_EQ(summary.doubleExtensionCount, c.doubleExtension);
    EXPECT_EQ(summary.sampleItems, std::vector<std::string>{std::string(c.name)});
  }
}

}  // namespace
}  // namespace lumenscribe
