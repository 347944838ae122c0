// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "report/json_report.h"

#include <nlohmann/json.hpp>

#include "core/path_text.h"
#include "health/health_explanation.h"
#include "privacy/privacy_summary.h"

namespace lumenscribe {

namespace {

using nlohmann::ordered_json;

std::string dump(const ordered_json& json) {
  // Every string is valid UTF-8 already; replacing is a guard, never a throw.
  return json.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

ordered_json sectionJson(const InsightSection& section) {
  ordered_json rows = ordered_json::array();
  for (const auto& row : section.rows) {
    rows.push_back({{"id", row.id.text()}, {"label", row.label}, {"value", row.value}});
  }
  return {{"id", section.id.text()},
          {"title", section.title},
          {"systemImage", section.systemImage},
          {"rows", std::move(rows)}};
}

// What the "Inspect Further" sheet would say, for a health verdict other than "Looks intact".
ordered_json healthExplanationJson(const InsightSection& section) {
  const HealthInspection inspection = healthInspection(section);
  const auto optionalText = [](const std::optional<std::string>& text) {
    return text ? ordered_json(*text) : ordered_json(nullptr);
  };
  return {{"assessment", inspection.assessment},
          {"readable", inspection.readable},
          {"structureLabel", optionalText(inspection.structureLabel)},
          {"structureValue", optionalText(inspection.structureValue)},
          {"meaning", inspection.explanation.meaning},
          {"knownFacts", inspection.explanation.knownFacts},
          {"nextSteps", inspection.explanation.nextSteps}};
}

}  // namespace

std::string resultJson(const LumenscribeResult& result) {
  ordered_json sections = ordered_json::array();
  for (const auto& section : result.sections) sections.push_back(sectionJson(section));

  ordered_json findings = ordered_json::array();
  for (const auto& finding : result.privacyFindings) {
    findings.push_back({{"id", finding.id.text()},
                        {"title", finding.title},
                        {"detail", finding.detail},
                        {"level", rawValue(finding.level)}});
  }

  ordered_json raw = ordered_json::object();
  for (const auto& [key, value] : result.rawMetadata) raw[key] = value;

  const Verdict verdict = verdictFor(result.privacyFindings);
  const SeverityCounts counts = severityCounts(result.privacyFindings);

  ordered_json json = {
      {"id", result.id.text()},
      {"url", fileUrl(result.url)},
      {"path", validUtf8(result.url.string())},
      {"displayName", result.displayName},
      {"typeDescription", result.typeDescription},
      {"summaryCount", result.summaryCount},
      {"summaryItems", result.summaryItems},
      {"sections", std::move(sections)},
      {"privacyFindings", std::move(findings)},
      {"rawMetadata", std::move(raw)},
      {"verdict", {{"text", verdict.text}, {"level", verdictLevelText(verdict.level)}}},
      {"counts", {{"info", counts.info}, {"caution", counts.caution}, {"warning", counts.warning}}},
  };
  for (const auto& section : result.sections) {
    if (section.title == "File Health" && offersHealthInspection(section)) {
      json["healthExplanation"] = healthExplanationJson(section);
      break;
    }
  }
  return dump(json);
}

std::string failureJson(const std::filesystem::path& path, const std::string& message) {
  return dump(ordered_json{{"path", validUtf8(path.string())}, {"error", validUtf8(message)}});
}

}  // namespace lumenscribe
