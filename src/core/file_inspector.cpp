// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "lumenscribe/file_inspector.h"

#include "core/accumulators.h"
#include "core/path_text.h"
#include "health/health_assessment.h"
#include "identity/basic_facts.h"
#include "identity/identity_integrity.h"
#include "identity/type_verification.h"
#include "platform/file_status.h"
#include "platform/unicode_text.h"
#include "privacy/privacy_summary.h"

namespace lumenscribe {

namespace {

// One short description of what the item is, for the result's heading.
std::string typeDescriptionOf(const std::filesystem::path& url, const ItemFacts& facts) {
  if (facts.isDirectory) return facts.isPackage ? "macOS Package" : "Folder";
  if (facts.contentType) return facts.contentType->describe();
  return platform::upperCased(validUtf8(pathExtension(url)));
}

}  // namespace

Expected<LumenscribeResult> FileInspector::inspect(const std::filesystem::path& url) const {
  // Linux has no per-item access grants to take and release around the inspection.
  auto read = platform::readItemFacts(url);
  if (!read) return read.error();
  const ItemFacts& facts = *read;
  // FIFOs, sockets and devices are refused from their status alone: opening one could
  // block or have effects of its own.
  if (!facts.isRegularFile && !facts.isDirectory) {
    return make_error_code(FileInspectionError::unsupportedFile);
  }

  const std::string displayName = facts.name ? *facts.name : validUtf8(lastPathComponent(url));
  Accumulators accumulators;

  // The order of the steps is the order of the sections on screen and in the report.
  accumulators.sections.emplace_back(facts.isDirectory ? "Container" : "File",
                                     facts.isDirectory ? "folder.fill" : "doc.fill",
                                     basicFileFacts(url, facts));

  if (facts.isRegularFile) {
    addIdentityAndIntegrity(url, accumulators);
    verifyFileType(url, facts.contentType, accumulators);
    assessFileHealth(url, facts.contentType, facts.fileSize.value_or(0), accumulators);
  }

  // Then: the folder or ZIP inventory, system metadata, the PDF, audio, video and text
  // analyzers as the content type decides, and last the image pass for every item.

  completeFindingsAndSummary(accumulators);
  const std::int64_t count = detailCount(accumulators.sections);
  return LumenscribeResult(url, displayName, typeDescriptionOf(url, facts), count,
                           std::move(accumulators.summaryItems), std::move(accumulators.sections),
                           std::move(accumulators.findings), std::move(accumulators.rawMetadata));
}

}  // namespace lumenscribe
