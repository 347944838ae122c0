// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lumenscribe/result.h"

namespace lumenscribe {

/// Plain-language account of a health verdict, for the "Inspect Further" sheet.
struct HealthExplanation {
  std::string meaning;
  std::vector<std::string> knownFacts;
  std::vector<std::string> nextSteps;
};

/// What the sheet shows: the facts read from a "File Health" section and the explanation
/// chosen for them.
struct HealthInspection {
  std::string assessment;  // "Unknown" when the section has no "Assessment" row
  std::string readable;    // "Unknown" when the section has no "Readable" row
  std::optional<std::string> structureLabel;
  std::optional<std::string> structureValue;
  HealthExplanation explanation;
};

/// Chooses the explanation: by the structure row first, then by the assessment.
HealthExplanation explainHealth(std::string_view assessment,
                                std::optional<std::string_view> structureLabel,
                                std::optional<std::string_view> structureValue);

/// Reads the inputs from a "File Health" section and explains them.
HealthInspection healthInspection(const InsightSection& section);

/// True when the section has an "Assessment" row whose value is not "Looks intact": only
/// then is there something to explain.
bool offersHealthInspection(const InsightSection& section);

}  // namespace lumenscribe
