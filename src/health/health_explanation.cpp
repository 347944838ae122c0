// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "health/health_explanation.h"

#include <algorithm>
#include <array>

#include "health/health_explanation_tables.h"

namespace lumenscribe {

namespace {

// The rows that carry a check's outcome; the first of them in the section is used.
constexpr std::array<std::string_view, 7> kStructureLabels = {
    "Image Structure", "PDF Structure",   "ZIP Structure", "Compressed Stream",
    "Media Structure", "Basic Read Test", "Structure"};

const InsightRow* findRow(const InsightSection& section, std::string_view label) {
  const auto row =
      std::find_if(section.rows.begin(), section.rows.end(),
                   [&](const InsightRow& candidate) { return candidate.label == label; });
  return row == section.rows.end() ? nullptr : &*row;
}

// A structure row that names its situation precisely; nothing sends the choice on to the
// assessment.
std::optional<ExplanationId> byStructure(std::string_view label, std::string_view value) {
  if (label == "Image Structure") {
    if (value == "Decode failed") return ExplanationId::imageDecodeFailed;
    if (value == "Incomplete" || value == "Unexpected end of file") {
      return ExplanationId::imageTruncated;
    }
    if (value == "Invalid data") return ExplanationId::imageInvalidData;
  } else if (label == "PDF Structure") {
    if (value == "Locked / encrypted") return ExplanationId::pdfLocked;
    if (value == "Could not open" || value == "No readable pages")
      return ExplanationId::pdfUnusable;
  } else if (label == "ZIP Structure") {
    if (value == "Encrypted / password required") return ExplanationId::zipEncrypted;
    if (value == "Integrity test failed") return ExplanationId::zipIntegrityFailed;
  }
  return std::nullopt;
}

ExplanationId byAssessment(std::string_view assessment) {
  if (assessment == "Empty file") return ExplanationId::emptyFile;
  if (assessment == "Unreadable" || assessment == "Possible read problem") {
    return ExplanationId::unreadable;
  }
  return ExplanationId::uncertain;
}

}  // namespace

HealthExplanation explainHealth(std::string_view assessment,
                                std::optional<std::string_view> structureLabel,
                                std::optional<std::string_view> structureValue) {
  if (structureLabel && structureValue) {
    if (const auto id = byStructure(*structureLabel, *structureValue)) return explanationText(*id);
  }
  return explanationText(byAssessment(assessment));
}

HealthInspection healthInspection(const InsightSection& section) {
  HealthInspection inspection;
  const InsightRow* assessment = findRow(section, "Assessment");
  const InsightRow* readable = findRow(section, "Readable");
  inspection.assessment = assessment ? assessment->value : "Unknown";
  inspection.readable = readable ? readable->value : "Unknown";
  const auto structure =
      std::find_if(section.rows.begin(), section.rows.end(), [](const InsightRow& row) {
        return std::find(kStructureLabels.begin(), kStructureLabels.end(), row.label) !=
               kStructureLabels.end();
      });
  if (structure != section.rows.end()) {
    inspection.structureLabel = structure->label;
    inspection.structureValue = structure->value;
  }
  inspection.explanation =
      explainHealth(inspection.assessment, inspection.structureLabel, inspection.structureValue);
  return inspection;
}

bool offersHealthInspection(const InsightSection& section) {
  const InsightRow* assessment = findRow(section, "Assessment");
  return assessment != nullptr && assessment->value != "Looks intact";
}

}  // namespace lumenscribe
