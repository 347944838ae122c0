// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "lumenscribe/result.h"

#include <gtest/gtest.h>

#include <regex>
#include <unordered_set>

namespace lumenscribe {
namespace {

TEST(Uuid, isRandomVersionFourInCanonicalForm) {
  const std::regex canonical("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}");
  std::unordered_set<std::string> seen;
  for (int i = 0; i < 1000; ++i) {
    const std::string text = Uuid::random().text();
    EXPECT_TRUE(std::regex_match(text, canonical)) << text;
    EXPECT_TRUE(seen.insert(text).second) << "repeated " << text;
  }
}

TEST(Records, areEqualOnlyToThemselvesAndTheirCopies) {
  const InsightRow row("Name", "a.txt");
  const InsightRow twin("Name", "a.txt");
  EXPECT_NE(row, twin);  // made separately: different identifiers
  const InsightRow copy = row;
  EXPECT_EQ(row, copy);
  EXPECT_EQ(std::hash<InsightRow>{}(row), std::hash<InsightRow>{}(copy));

  InsightSection section("File", "doc.fill", {row});
  InsightSection changed = section;
  changed.rows.front().value = "b.txt";
  EXPECT_NE(section, changed);
}

TEST(PrivacyLevel, readsBackItsOwnRawValuesOnly) {
  for (const PrivacyLevel level :
       {PrivacyLevel::neutral, PrivacyLevel::notice, PrivacyLevel::sensitive}) {
    EXPECT_EQ(privacyLevelFromRawValue(rawValue(level)), level);
  }
  EXPECT_EQ(privacyLevelFromRawValue("Notice"), std::nullopt);
  EXPECT_EQ(privacyLevelFromRawValue(""), std::nullopt);
}

}  // namespace
}  // namespace lumenscribe
