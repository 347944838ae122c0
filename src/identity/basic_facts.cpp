// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/basic_facts.h"

#include "core/path_text.h"
#include "identity/formatters.h"
#include "platform/unicode_text.h"

namespace lumenscribe {

std::vector<InsightRow> basicFileFacts(const std::filesystem::path& url, const ItemFacts& facts) {
  std::vector<InsightRow> rows;
  rows.emplace_back("Name", facts.name ? *facts.name : validUtf8(lastPathComponent(url)));
  rows.emplace_back("Type", facts.contentType ? facts.contentType->describe() : "Unknown");
  if (facts.fileSize) rows.emplace_back("Size", byteCountText(*facts.fileSize));
  if (facts.creationDate) rows.emplace_back("Created", mediumDateText(*facts.creationDate));
  if (facts.modificationDate)
    rows.emplace_back("Modified", mediumDateText(*facts.modificationDate));
  if (facts.isDirectory) {
    rows.emplace_back("Container Type", facts.isPackage ? "macOS Package" : "Folder");
  } else {
    const std::string extension = platform::lowerCased(validUtf8(pathExtension(url)));
    rows.emplace_back("Extension", extension.empty() ? "None" : extension);
  }
  rows.emplace_back("Path", validUtf8(url.string()));
  return rows;
}

}  // namespace lumenscribe
