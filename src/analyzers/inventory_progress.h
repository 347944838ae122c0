// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>

#include "lumenscribe/inspection_control.h"

namespace lumenscribe {

/// Counts the entries of a walk or listing for its caller's progress display and tells when
/// the caller wants it to end. Cheap enough to ask once per entry.
class InventoryProgress {
 public:
  explicit InventoryProgress(const InspectionControl& control) : control_(control) {}

  /// Counts one entry and reports the count when the interval has passed. False once a
  /// stop has been requested.
  bool step() {
    ++entries_;
    if (control_.stopRequested()) return false;
    // The clock is read every 256 entries only: a fast walk meets hundreds of thousands.
    if (control_.onProgress && entries_ % 256 == 0) {
      const auto now = std::chrono::steady_clock::now();
      if (now >= nextReport_) {
        nextReport_ = now + InspectionControl::kProgressInterval;
        control_.onProgress(entries_);
      }
    }
    return true;
  }

 private:
  const InspectionControl& control_;
  std::int64_t entries_ = 0;
  std::chrono::steady_clock::time_point nextReport_ =
      std::chrono::steady_clock::now() + InspectionControl::kProgressInterval;
};

}  // namespace lumenscribe
