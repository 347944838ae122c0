// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "health/health_explanation.h"
#include "lumenscribe/file_inspector.h"
#include "report/json_report.h"

namespace lumenscribe {
namespace {

const std::filesystem::path kFixtures = std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "health";

nlohmann::json inspectAsJson(const std::string& file) {
  const auto result = FileInspector().inspect(kFixtures / file);
  EXPECT_TRUE(result) << file;
  return result ? nlohmann::json::parse(resultJson(*result)) : nlohmann::json();
}

std::vector<std::string> sectionTitles(const nlohmann::json& result) {
  std::vector<std::string> titles;
  for (const auto& section : result["sections"]) titles.push_back(section["title"]);
  return titles;
}

TEST(HealthReport, typeAndHealthFollowIdentityAndUncertainVerdictsCarryTheirExplanation) {
  const nlohmann::json locked = inspectAsJson("password_protected.zip");
  const auto titles = sectionTitles(locked);
  const auto identity = std::find(titles.begin(), titles.end(), "Identity & Integrity");
  ASSERT_NE(identity, titles.end());
  ASSERT_LT(std::distance(titles.begin(), identity) + 2, std::ssize(titles));
  EXPECT_EQ(*(identity + 1), "Type Verification");
  EXPECT_EQ(*(identity + 2), "File Health");
  // The JSON carries what the "Inspect Further" sheet would show for the same section.
  const nlohmann::json& health = locked["sections"][std::distance(titles.begin(), identity) + 2];
  std::vector<InsightRow> rows;
  for (const auto& row : health["rows"]) rows.emplace_back(row["label"], row["value"]);
  const HealthInspection inspection =
      healthInspection(InsightSection("File Health", health["systemImage"], std::move(rows)));
  EXPECT_EQ(locked["healthExplanation"],
            (nlohmann::json{{"assessment", "Verification limited"},
                            {"readable", "Yes"},
                            {"structureLabel", "ZIP Structure"},
                            {"structureValue", "Encrypted / password required"},
                            {"meaning", inspection.explanation.meaning},
                            {"knownFacts", inspection.explanation.knownFacts},
                            {"nextSteps", inspection.explanation.nextSteps}}));

  EXPECT_FALSE(inspectAsJson("intact.jpg").contains("healthExplanation"));
  const nlohmann::json empty = inspectAsJson("empty.jpg");
  EXPECT_EQ(empty["healthExplanation"]["structureLabel"], "Structure");
  // Text named .pdf proves no format: the name chooses the PDF check, which fails.
  const nlohmann::json renamed = inspectAsJson("not_a_pdf.pdf");
  EXPECT_EQ(renamed["rawMetadata"]["Type Verification Result"], "Mismatch detected");
  EXPECT_EQ(renamed["rawMetadata"]["File Health Assessment"], "Possible damage");
  EXPECT_EQ(renamed["healthExplanation"]["structureValue"], "Could not open");
}

}  // namespace
}  // namespace lumenscribe
