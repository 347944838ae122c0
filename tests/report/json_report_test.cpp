// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "report/json_report.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace lumenscribe {
namespace {

TEST(ResultJson, hasTheStableShapeOnOneLine) {
  std::vector<InsightSection> sections;
  sections.emplace_back("File", "doc.fill", std::vector<InsightRow>{{"Name", "caf\uFFFD"}});
  std::vector<PrivacyFinding> findings;
  findings.emplace_back("Camera details are visible", "Body.", PrivacyLevel::notice);
  const LumenscribeResult result("/tmp/caf\xE9 x", "caf\uFFFD x", "Plain Text", 1, {"File"},
                                 std::move(sections), std::move(findings), {{"K", "V"}});
  const std::string text = resultJson(result);
  EXPECT_EQ(text.find('\n'), std::string::npos);

  const auto json = nlohmann::json::parse(text);
  std::vector<std::string> keys;
  const auto ordered = nlohmann::ordered_json::parse(text);
  for (const auto& item : ordered.items()) keys.push_back(item.key());
  EXPECT_EQ(keys,
            (std::vector<std::string>{"id", "url", "path", "displayName", "typeDescription",
                                      "summaryCount", "summaryItems", "sections", "privacyFindings",
                                      "rawMetadata", "verdict", "counts"}));
  EXPECT_EQ(json["id"], result.id.text());
  EXPECT_EQ(json["url"], "file:///tmp/caf%E9%20x");
  EXPECT_EQ(json["path"], "/tmp/caf\uFFFD x");
  EXPECT_EQ(json["summaryCount"], 1);
  EXPECT_EQ(json["sections"][0]["systemImage"], "doc.fill");
  EXPECT_EQ(json["sections"][0]["rows"][0]["label"], "Name");
  EXPECT_EQ(json["sections"][0]["rows"][0]["id"], result.sections[0].rows[0].id.text());
  EXPECT_EQ(json["privacyFindings"][0]["level"], "notice");
  EXPECT_EQ(json["rawMetadata"]["K"], "V");
  EXPECT_EQ(json["verdict"]["text"], "Review suggested");
  EXPECT_EQ(json["verdict"]["level"], "caution");
  EXPECT_EQ(json["counts"], (nlohmann::json{{"info", 0}, {"caution", 1}, {"warning", 0}}));
}

TEST(FailureJson, namesThePathAndTheError) {
  const auto json = nlohmann::json::parse(failureJson("/x/\xFF", "No such file or directory"));
  EXPECT_EQ(json, (nlohmann::json{{"path", "/x/\uFFFD"}, {"error", "No such file or directory"}}));
}

}  // namespace
}  // namespace lumenscribe
