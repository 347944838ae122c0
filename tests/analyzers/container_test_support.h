// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/accumulators.h"

namespace lumenscribe::test {

using Rows = std::vector<std::pair<std::string, std::string>>;

/// The rows of the section titled `title` as label/value pairs; empty when there is none.
inline Rows rowsOf(const Accumulators& accumulators, const std::string& title) {
  Rows rows;
  for (const auto& section : accumulators.sections) {
    if (section.title != title) continue;
    for (const auto& row : section.rows) rows.emplace_back(row.label, row.value);
  }
  return rows;
}

inline std::vector<std::string> sectionTitles(const Accumulators& accumulators) {
  std::vector<std::string> titles;
  for (const auto& section : accumulators.sections) titles.push_back(section.title);
  return titles;
}

inline std::vector<std::string> findingTitles(const Accumulators& accumulators) {
  std::vector<std::string> titles;
  for (const auto& finding : accumulators.findings) titles.push_back(finding.title);
  return titles;
}

/// The value of the row labelled `label` in section `title`; "" when there is none.
inline std::string rowValue(const Accumulators& accumulators, const std::string& title,
                            const std::string& label) {
  for (const auto& [rowLabel, value] : rowsOf(accumulators, title)) {
    if (rowLabel == label) return value;
  }
  return {};
}

}  // namespace lumenscribe::test
