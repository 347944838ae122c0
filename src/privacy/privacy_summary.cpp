// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "privacy/privacy_summary.h"

#include <algorithm>
#include <unordered_set>

namespace lumenscribe {

void completeFindingsAndSummary(Accumulators& accumulators) {
  if (accumulators.findings.empty()) {
    accumulators.findings.emplace_back(
        "No obvious high-interest metadata found",
        "Lumenscribe did not detect location, author, ownership, source, or creation-history "
        "metadata in the information it currently inspects.",
        PrivacyLevel::neutral);
  }
  auto& items = accumulators.summaryItems;
  if (items.empty()) items.emplace_back("File");
  std::unordered_set<std::string> seen;
  items.erase(std::remove_if(items.begin(), items.end(),
                             [&](const std::string& item) { return !seen.insert(item).second; }),
              items.end());
}

std::int64_t detailCount(const std::vector<InsightSection>& sections) {
  std::int64_t count = 0;
  for (const auto& section : sections) count += static_cast<std::int64_t>(section.rows.size());
  return count;
}

std::int64_t SeverityCounts::of(PrivacyLevel level) const {
  switch (level) {
    case PrivacyLevel::neutral: return info;
    case PrivacyLevel::notice: return caution;
    case PrivacyLevel::sensitive: return warning;
  }
  return 0;
}

SeverityCounts severityCounts(const std::vector<PrivacyFinding>& findings) {
  SeverityCounts counts;
  for (const auto& finding : findings) {
    switch (finding.level) {
      case PrivacyLevel::neutral: ++counts.info; break;
      case PrivacyLevel::notice: ++counts.caution; break;
      case PrivacyLevel::sensitive: ++counts.warning; break;
    }
  }
  return counts;
}

Verdict verdictFor(const std::vector<PrivacyFinding>& findings) {
  const SeverityCounts counts = severityCounts(findings);
  if (counts.warning > 0) return {"Review before opening or sharing", VerdictLevel::warning};
  if (counts.caution > 0) return {"Review suggested", VerdictLevel::caution};
  return {"No obvious concerns found", VerdictLevel::info};
}

std::string_view verdictLevelText(VerdictLevel level) {
  switch (level) {
    case VerdictLevel::info: return "info";
    case VerdictLevel::caution: return "caution";
    case VerdictLevel::warning: return "warning";
  }
  return "info";
}

}  // namespace lumenscribe
