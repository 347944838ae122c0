// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/container_summary.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <utility>

#include "analyzers/container_tables.h"
#include "core/path_text.h"
#include "identity/formatters.h"
#include "platform/unicode_text.h"

namespace lumenscribe {

namespace {

using namespace containers;

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// invoice.pdf.exe, run.sh.txt, photos.tar.gz: of the name's dot-separated pieces (empty
// ones dropped), at least three, with an executable last or inner one or an archive last.
bool hasDoubleExtension(std::string_view name) {
  std::array<std::string_view, 3> pieces;  // last, inner, and proof of a third
  std::size_t found = 0;
  std::size_t end = name.size();
  while (found < pieces.size() && end > 0) {
    const std::size_t dot = name.rfind('.', end - 1);
    const std::size_t begin = dot == std::string_view::npos ? 0 : dot + 1;
    if (begin < end) pieces[found++] = name.substr(begin, end - begin);
    if (dot == std::string_view::npos) break;
    end = dot;
  }
  if (found < 3) return false;
  const std::string last = lowerCasedText(pieces[0]);
  const std::string inner = lowerCasedText(pieces[1]);
  return isIn(kExecutableExtensions, last) || isIn(kExecutableExtensions, inner) ||
         isIn(kArchiveExtensions, last);
}

bool hasExplicitTerm(std::string_view name) {
  const std::string lower = lowerCasedText(name);
  return std::any_of(kExplicitTerms.begin(), kExplicitTerms.end(),
                     [&](std::string_view term) { return lower.find(term) != std::string::npos; });
}

// "Top Types": the eight most frequent extensions, ties in ascending text order.
std::string topTypesText(const std::map<std::string, std::int64_t>& counts) {
  std::vector<std::pair<std::string_view, std::int64_t>> ranked(counts.begin(), counts.end());
  const std::size_t shown = std::min<std::size_t>(8, ranked.size());
  std::partial_sort(ranked.begin(), ranked.begin() + static_cast<std::ptrdiff_t>(shown),
                    ranked.end(), [](const auto& a, const auto& b) {
                      return a.second != b.second ? a.second > b.second : a.first < b.first;
                    });
  std::string text;
  for (std::size_t i = 0; i < shown; ++i) {
    if (i > 0) text += " · ";
    text += platform::upperCased(ranked[i].first);
    text += " × ";
    text += std::to_string(ranked[i].second);
  }
  return text;
}

std::string positionLabel(std::size_t position) {
  char label[24];
  std::snprintf(label, sizeof label, "%02zu", position);
  return label;
}

}  // namespace

void ContainerSummary::addSample(std::string_view text) {
  if (sampleItems.size() < kMaxSamples) sampleItems.emplace_back(text);
}

void ContainerSummary::addBytes(std::int64_t bytes) {
  if (__builtin_add_overflow(totalBytes, bytes, &totalBytes)) {
    totalBytes = bytes < 0 ? std::numeric_limits<std::int64_t>::min()
                           : std::numeric_limits<std::int64_t>::max();
  }
}

std::string_view containerExtension(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  const std::string_view name = slash == std::string_view::npos ? path : path.substr(slash + 1);
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {};
  return name.substr(dot + 1);
}

std::string lowerCasedText(std::string_view text) {
  if (isAscii(text)) return asciiLower(text);
  return platform::lowerCased(validUtf8(text));
}

void classifyContainerFile(std::string_view name, std::string_view extension,
                           ContainerSummary& summary) {
  if (isIn(kImageExtensions, extension)) {
    ++summary.imageCount;
  } else if (isIn(kVideoExtensions, extension)) {
    ++summary.videoCount;
  } else if (isIn(kAudioExtensions, extension)) {
    ++summary.audioCount;
  } else if (isIn(kDocumentExtensions, extension)) {
    ++summary.documentCount;
  }
  if (hasDoubleExtension(name)) ++summary.doubleExtensionCount;
  if (hasExplicitTerm(name)) ++summary.suspiciousNameCount;
}

void publishContainerSummary(const ContainerSummary& summary, std::string_view kind,
                             Accumulators& accumulators) {
  const std::string contentsTitle = std::string(kind) + " Contents";
  const auto decimal = [](std::int64_t count) { return std::to_string(count); };

  std::vector<InsightRow> contents;
  contents.emplace_back("Files", decimal(summary.fileCount));
  contents.emplace_back("Folders", decimal(summary.folderCount));
  contents.emplace_back("Contents Size", byteCountText(summary.totalBytes));
  if (!summary.extensionCounts.empty()) {
    contents.emplace_back("Top Types", topTypesText(summary.extensionCounts));
  }
  if (summary.hiddenCount > 0) contents.emplace_back("Hidden Items", decimal(summary.hiddenCount));
  if (summary.executableCount > 0) {
    contents.emplace_back("Executables", decimal(summary.executableCount));
  }
  if (summary.nestedArchiveCount > 0) {
    contents.emplace_back("Nested Archives", decimal(summary.nestedArchiveCount));
  }
  accumulators.sections.emplace_back(
      contentsTitle, kind == "ZIP Archive" ? "archivebox.fill" : "folder.badge.gearshape",
      std::move(contents));

  if (!summary.sampleItems.empty()) {
    std::vector<InsightRow> preview;
    for (std::size_t i = 0; i < summary.sampleItems.size(); ++i) {
      preview.emplace_back(positionLabel(i + 1), summary.sampleItems[i]);
    }
    accumulators.sections.emplace_back("Contents Preview", "list.bullet.indent",
                                       std::move(preview));
  }

  const std::pair<const char*, std::int64_t> checks[] = {
      {"Images", summary.imageCount},
      {"Videos", summary.videoCount},
      {"Audio", summary.audioCount},
      {"Documents", summary.documentCount},
      {"Double Extensions", summary.doubleExtensionCount},
      {"Flagged Names", summary.suspiciousNameCount},
      {"Executable Content", summary.executableCount},
      {"Nested Archives", summary.nestedArchiveCount},
      {"Hidden Items", summary.hiddenCount},
  };
  std::vector<InsightRow> safety;
  for (const auto& [label, count] : checks) {
    if (count > 0) safety.emplace_back(label, decimal(count));
  }
  if (safety.empty()) {
    safety.emplace_back("Initial Check",
                        "No obvious container-level warning signs found in this initial "
                        "inspection");
  }
  accumulators.sections.emplace_back("Safe Inspection", "checkmark.shield.fill", std::move(safety));
  accumulators.summaryItems.emplace_back("Safe Inspection");

  auto& findings = accumulators.findings;
  if (summary.imageCount + summary.videoCount > 0) {
    findings.emplace_back("Visual media is present",
                          "This container includes " + decimal(summary.imageCount) +
                              " image file(s) and " + decimal(summary.videoCount) +
                              " video file(s). Lumenscribe has not opened or displayed those "
                              "files.",
                          PrivacyLevel::neutral);
  }
  if (summary.doubleExtensionCount > 0) {
    findings.emplace_back("Double-extension filenames found",
                          "Some filenames contain more than one extension. These can be "
                          "harmless, but they can also make a file's real type less obvious.",
                          PrivacyLevel::sensitive);
  }
  if (summary.suspiciousNameCount > 0) {
    findings.emplace_back("Potentially sensitive filenames found",
                          "Some filenames contain terms commonly associated with adult or "
                          "explicit material. Lumenscribe did not open or preview those files.",
                          PrivacyLevel::sensitive);
  }

  accumulators.setRaw("Container Files", decimal(summary.fileCount));
  accumulators.setRaw("Container Folders", decimal(summary.folderCount));
  accumulators.setRaw("Container Contents Bytes", decimal(summary.totalBytes));
  accumulators.setRaw("Container Hidden Items", decimal(summary.hiddenCount));
  accumulators.setRaw("Container Executables", decimal(summary.executableCount));
  accumulators.setRaw("Container Nested Archives", decimal(summary.nestedArchiveCount));
  accumulators.setRaw("Container Images", decimal(summary.imageCount));
  accumulators.setRaw("Container Videos", decimal(summary.videoCount));
  accumulators.setRaw("Container Audio", decimal(summary.audioCount));
  accumulators.setRaw("Container Documents", decimal(summary.documentCount));
  accumulators.setRaw("Container Double Extensions", decimal(summary.doubleExtensionCount));
  accumulators.setRaw("Container Flagged Names", decimal(summary.suspiciousNameCount));
  for (const auto& [extension, count] : summary.extensionCounts) {
    accumulators.setRaw("Container Type ." + extension, decimal(count));
  }
  accumulators.summaryItems.push_back(contentsTitle);

  if (summary.hiddenCount > 0) {
    findings.emplace_back("Hidden items are present",
                          "This container includes files or folders that are normally hidden "
                          "from casual Finder browsing.",
                          PrivacyLevel::notice);
  }
  if (summary.executableCount > 0) {
    findings.emplace_back("Executable content is present",
                          "This container includes one or more executable files or "
                          "executable-looking file types.",
                          PrivacyLevel::sensitive);
  }
  if (summary.nestedArchiveCount > 0) {
    findings.emplace_back("Nested archives are present",
                          "This container holds one or more additional archives, so some "
                          "contents are packaged another layer deep.",
                          PrivacyLevel::notice);
  }
}

}  // namespace lumenscribe
