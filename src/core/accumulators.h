// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "lumenscribe/result.h"

namespace lumenscribe {

/// What one inspection gathers. The driver owns it; every analyzer only appends to the
/// lists and sets raw entries (a later write to a key replaces the earlier value).
struct Accumulators {
  std::vector<InsightSection> sections;
  RawMetadata rawMetadata;
  std::vector<std::string> summaryItems;
  std::vector<PrivacyFinding> findings;

  void setRaw(std::string key, std::string value) {
    rawMetadata.insert_or_assign(std::move(key), std::move(value));
  }
};

}  // namespace lumenscribe
