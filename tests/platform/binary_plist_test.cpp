// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/binary_plist.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace lumenscribe::platform {
namespace {

using Array = MetadataValue::Array;

std::string fixture(const char* name) {
  std::ifstream in(std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "system" / name,
                   std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

Timestamp utc(std::int64_t seconds) { return Timestamp(std::chrono::seconds(seconds)); }

TEST(BinaryPlist, readsWhatAMacKeepsInExtendedAttributes) {
  EXPECT_EQ(parseBinaryPlist(fixture("where_froms.bplist")),
            MetadataValue(
                Array{"https://example.com/files/report.pdf", "https://example.com/downloads"}));
  // 2024-03-05 14:30:15 UTC, counted by property lists from 2001.
  EXPECT_EQ(parseBinaryPlist(fixture("downloaded_date.bplist")),
            MetadataValue(Array{utc(1709649015)}));
  const Array everyKind{"Caf\u00e9 \u2014 \U0001F600",
                        -5,
                        std::int64_t{1} << 62,
                        2.5,
                        1,
                        MetadataValue::Other{"3 bytes"},
                        utc(978307200),
                        Array{"a", 1},
                        MetadataValue::Other{"2 entries"}};
  EXPECT_EQ(parseBinaryPlist(fixture("every_kind.bplist")), MetadataValue(everyKind));
}

TEST(BinaryPlist, refusesWhatIsNoBinaryPropertyListOrNestsTooDeep) {
  // Once made libplist abort: a dictionary whose key holds a NUL byte.
  EXPECT_EQ(parseBinaryPlist(fixture("nul_in_key.bplist")),
            MetadataValue(MetadataValue::Other{"1 entry"}));

  const std::string cases[] = {
      "",
      "bplist00",
      "<?xml version=\"1.0\"?><plist><string>x</string></plist>",
      fixture("truncated.bplist"),
      fixture("nested_too_deep.bplist"),
      // A whole list whose trailer names a top object it does not have.
      fixture("where_froms.bplist").replace(fixture("where_froms.bplist").size() - 9, 1, "\x7f"),
  };
  for (const std::string& bytes : cases) {
    SCOPED_TRACE(bytes.substr(0, 16));
    EXPECT_EQ(parseBinaryPlist(bytes), std::nullopt);
  }
}

}  // namespace
}  // namespace lumenscribe::platform
