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

// (The order of the sections is the driver's; see the inspector's tests.)
TEST(HealthReport, uncertainVerdictsCarryTheExplanationTheSheetWouldShow) {
  const nlohmann::json locked = inspectAsJson("password_protected.zip");
  std::vector<InsightRow> rows;
  for (const auto& section : locked["sections"]) {
    if (section["title"] != "File Health") continue;
    for (const auto& row : section["rows"]) rows.emplace_back(row["label"], row["value"]);
  }
  const HealthInspection inspection =
      healthInspection(InsightSection("File Health", "stethoscope", std::move(rows)));
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
