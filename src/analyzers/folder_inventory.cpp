// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/folder_inventory.h"

#include <filesystem>
#include <string>
#include <string_view>

#include "analyzers/container_summary.h"
#include "analyzers/container_tables.h"
#include "analyzers/inventory_progress.h"
#include "core/path_text.h"
#include "platform/folder_walk.h"

namespace lumenscribe {

namespace {

// The walked folder's absolute path and a "/": what a preview entry's full path loses.
std::string rootPrefixOf(const std::filesystem::path& url) {
  std::error_code error;
  std::string root = std::filesystem::absolute(url, error).lexically_normal().string();
  if (error) root = url.lexically_normal().string();
  while (root.size() > 1 && root.back() == '/') root.pop_back();
  return root + "/";
}

// The entry's path with every occurrence of the root's path and a "/" removed: normally
// only the one in front, which leaves the path relative to the walked folder.
std::string previewPath(const std::string& rootPrefix, const platform::FolderEntry& entry) {
  std::string relative(entry.parentPath);
  relative += entry.name;
  for (std::size_t at = relative.find(rootPrefix); at != std::string::npos;
       at = relative.find(rootPrefix, at)) {
    relative.erase(at, rootPrefix.size());
  }
  return validUtf8(relative);
}

void countFile(const platform::FolderEntry& entry, ContainerSummary& summary) {
  ++summary.fileCount;
  summary.addBytes(entry.size);
  if (entry.name.starts_with('.')) ++summary.hiddenCount;
  // The permission decides, not the name: setup.exe without it is no executable here.
  if (entry.isExecutable) ++summary.executableCount;
  const std::string_view extension = containerExtension(entry.name);
  if (extension.empty()) return;
  const std::string lower = lowerCasedText(extension);
  ++summary.extensionCounts[lower];
  if (containers::isIn(containers::kArchiveExtensions, lower)) ++summary.nestedArchiveCount;
  classifyContainerFile(entry.name, lower, summary);
}

}  // namespace

void inventoryFolder(const platform::OpenedItem& item, Accumulators& accumulators,
                     const InspectionControl& control) {
  platform::FolderWalk walk(item.descriptor());
  if (!walk.isListable()) return;
  const std::string rootPrefix = rootPrefixOf(item.url());
  ContainerSummary summary;
  InventoryProgress progress(control);
  while (const platform::FolderEntry* entry = walk.next()) {
    if (!progress.step()) break;
    const bool wantsSample = summary.sampleItems.size() < ContainerSummary::kMaxSamples;
    if (entry->isDirectory()) {
      ++summary.folderCount;
      // A package is one item to its user; what it holds is its own business.
      if (platform::isPackageName(entry->name)) walk.skipContents();
      if (wantsSample) summary.addSample("📁 " + previewPath(rootPrefix, *entry));
    } else {
      countFile(*entry, summary);
      if (wantsSample) summary.addSample(previewPath(rootPrefix, *entry));
    }
  }
  publishContainerSummary(summary, item.facts().isPackage ? "Package" : "Folder", accumulators);
}

}  // namespace lumenscribe
