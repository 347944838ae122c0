// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/accumulators.h"

namespace lumenscribe {

/// What a folder, package or ZIP archive holds, counted entry by entry. It keeps no list of
/// the entries: only the counters, one counter per distinct extension and the first
/// kMaxSamples entries, however large the container.
struct ContainerSummary {
  std::int64_t fileCount = 0;
  std::int64_t folderCount = 0;
  std::int64_t totalBytes = 0;
  std::int64_t hiddenCount = 0;
  std::int64_t executableCount = 0;
  std::int64_t nestedArchiveCount = 0;
  std::int64_t imageCount = 0;
  std::int64_t videoCount = 0;
  std::int64_t audioCount = 0;
  std::int64_t documentCount = 0;
  std::int64_t doubleExtensionCount = 0;
  std::int64_t suspiciousNameCount = 0;
  /// Lower-cased extension (no dot, valid UTF-8) to number of files.
  std::map<std::string, std::int64_t> extensionCounts;
  /// The first entries in the order they were met, as shown in "Contents Preview".
  std::vector<std::string> sampleItems;

  static constexpr std::size_t kMaxSamples = 20;

  friend bool operator==(const ContainerSummary&, const ContainerSummary&) = default;

  /// Appends a preview entry while there is room for one.
  void addSample(std::string_view text);
  /// Adds a file's size, staying at the largest count rather than overflowing.
  void addBytes(std::int64_t bytes);
};

/// The text after the last dot of the last path component (after the last "/"); empty when
/// there is none, when the name ends in a dot, or when the only dot leads the name.
std::string_view containerExtension(std::string_view path);

/// `text` lower-cased as valid UTF-8: ASCII quickly, anything else by full Unicode rules
/// (so a Kelvin sign in "PK<K>" still reads "pkg").
std::string lowerCasedText(std::string_view text);

/// The per-file classification both inventories share: the media or document category of
/// `extension` (lower-cased, not empty), a double extension in `name` (the last path
/// component) and an explicit term in it.
///
///     classifyContainerFile("invoice.pdf.exe", "exe", summary);  // a double extension
void classifyContainerFile(std::string_view name, std::string_view extension,
                           ContainerSummary& summary);

/// Publishes a filled summary: the "{kind} Contents", "Contents Preview" and "Safe
/// Inspection" sections, the "Container ..." raw entries, the summary items "Safe
/// Inspection" and "{kind} Contents", and the container findings. `kind` is "Folder",
/// "Package" or "ZIP Archive".
void publishContainerSummary(const ContainerSummary& summary, std::string_view kind,
                             Accumulators& accumulators);

}  // namespace lumenscribe
