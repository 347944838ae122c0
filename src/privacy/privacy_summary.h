// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "core/accumulators.h"
#include "lumenscribe/result.h"

namespace lumenscribe {

/// Adds the default neutral finding when nothing was found and "File" when no summary item
/// was added, then drops repeated summary items (the first occurrence keeps its place).
void completeFindingsAndSummary(Accumulators& accumulators);

/// The number of rows over all sections.
std::int64_t detailCount(const std::vector<InsightSection>& sections);

struct SeverityCounts {
  std::int64_t info = 0;
  std::int64_t caution = 0;
  std::int64_t warning = 0;
  std::int64_t of(PrivacyLevel level) const;
};

enum class VerdictLevel { info, caution, warning };

/// The headline of a result, from its findings alone.
struct Verdict {
  std::string_view text;
  VerdictLevel level;
};

SeverityCounts severityCounts(const std::vector<PrivacyFinding>& findings);
Verdict verdictFor(const std::vector<PrivacyFinding>& findings);
/// "info", "caution" or "warning".
std::string_view verdictLevelText(VerdictLevel level);

}  // namespace lumenscribe
