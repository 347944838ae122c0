// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "privacy/privacy_summary.h"

#include <gtest/gtest.h>

namespace lumenscribe {
namespace {

TEST(Completion, addsTheDefaultsOnlyWhenNothingWasFound) {
  Accumulators empty;
  completeFindingsAndSummary(empty);
  ASSERT_EQ(empty.findings.size(), 1u);
  EXPECT_EQ(empty.findings[0].title, "No obvious high-interest metadata found");
  EXPECT_EQ(empty.findings[0].level, PrivacyLevel::neutral);
  EXPECT_EQ(empty.summaryItems, std::vector<std::string>{"File"});

  Accumulators found;
  found.findings.emplace_back("Location data is embedded", "d", PrivacyLevel::notice);
  found.summaryItems = {"Identity & Integrity", "Camera", "Identity & Integrity", "camera",
                        "Camera"};
  completeFindingsAndSummary(found);
  EXPECT_EQ(found.findings.size(), 1u);
  EXPECT_EQ(found.summaryItems,
            (std::vector<std::string>{"Identity & Integrity", "Camera", "camera"}));
}

TEST(Verdict, isDecidedByTheMostSevereFinding) {
  const PrivacyFinding info("i", "", PrivacyLevel::neutral);
  const PrivacyFinding caution("c", "", PrivacyLevel::notice);
  const PrivacyFinding warning("w", "", PrivacyLevel::sensitive);

  const auto none = verdictFor({info});
  EXPECT_EQ(none.text, "No obvious concerns found");
  EXPECT_EQ(none.level, VerdictLevel::info);
  EXPECT_EQ(verdictFor({info, caution, caution}).text, "Review suggested");
  const auto worst = verdictFor({caution, caution, warning, info});
  EXPECT_EQ(worst.text, "Review before opening or sharing");
  EXPECT_EQ(verdictLevelText(worst.level), "warning");

  const auto counts = severityCounts({caution, caution, warning, info});
  EXPECT_EQ(counts.info, 1);
  EXPECT_EQ(counts.caution, 2);
  EXPECT_EQ(counts.warning, 1);
  EXPECT_EQ(counts.of(PrivacyLevel::notice), 2);
}

TEST(DetailCount, addsUpEveryRowOfEverySection) {
  std::vector<InsightSection> sections;
  EXPECT_EQ(detailCount(sections), 0);
  sections.emplace_back("File", "doc.fill", std::vector<InsightRow>{{"a", "1"}, {"b", "2"}});
  sections.emplace_back("Empty", "doc.fill", std::vector<InsightRow>{});
  sections.emplace_back("More", "doc.fill", std::vector<InsightRow>{{"c", "3"}});
  EXPECT_EQ(detailCount(sections), 3);
}

}  // namespace
}  // namespace lumenscribe
