// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <stop_token>

namespace lumenscribe {

/// What the caller of an inspection may do while it runs: follow a long folder walk, ZIP
/// listing or fingerprint, and end it early.
///
///     std::stop_source stop;
///     InspectionControl control{stop.get_token(), [](std::int64_t entries) { ... }};
///     inspector.inspect(item, control);  // stop.request_stop() from any thread ends the walk
struct InspectionControl {
  /// Once a stop is requested, a folder walk ends before its next entry, a ZIP listing's
  /// unzip is killed, the fingerprint ends before its next chunk (and gives no digest) and
  /// the analyses after the health check are skipped; the result then covers only what was
  /// read (the caller who stopped it usually drops it).
  std::stop_token stopToken;
  /// Called on the inspecting thread, about every kProgressInterval while a walk or listing
  /// runs, with the number of entries it has gone through so far. Must not block.
  std::function<void(std::int64_t entries)> onProgress = {};
  /// Called while the item's bytes are fingerprinted, after every chunk (1 MiB), with how
  /// many of its `totalBytes` have been read. The fingerprint runs beside the health check,
  /// so this comes from a thread other than the one that called inspect. Must not block.
  std::function<void(std::int64_t bytesRead, std::int64_t totalBytes)> onBytesRead = {};

  static constexpr std::chrono::milliseconds kProgressInterval{100};

  bool stopRequested() const { return stopToken.stop_requested(); }
};

}  // namespace lumenscribe
