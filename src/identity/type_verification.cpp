// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/type_verification.h"

#include <string>
#include <vector>

#include "core/path_text.h"
#include "identity/content_signature.h"
#include "platform/mime_database.h"
#include "platform/unicode_text.h"

namespace lumenscribe {

namespace {

// The extension claims a type that the content contradicts, and the desktop's own type
// for the file does not vouch for the content either.
bool isMismatch(const std::optional<ContentSignature>& signature,
                const std::optional<ContentType>& extensionType,
                const std::optional<ContentType>& platformType) {
  if (!signature || !extensionType) return false;
  if (contentTypeMatchesCategory(*extensionType, signature->category)) return false;
  return !platformType || !contentTypeMatchesCategory(*platformType, signature->category);
}

}  // namespace

void verifyFileType(const platform::OpenedItem& item, Accumulators& accumulators) {
  verifyFileType(item.url(), item.head(), item.contentType(), accumulators);
}

void verifyFileType(const std::filesystem::path& url, std::span<const std::byte> head,
                    const std::optional<ContentType>& platformType, Accumulators& accumulators) {
  // The extension shown and stored is valid UTF-8, so that a name with stray bytes can
  // still be printed and written to JSON.
  const std::string extension = platform::lowerCased(validUtf8(pathExtension(url)));
  std::optional<ContentType> extensionType;
  if (!extension.empty()) {
    extensionType = platform::contentTypeForExtension(extension);
    // An extension the database knows only as a directory type claims no data type.
    if (extensionType && !extensionType->conformsTo(AbstractType::data)) extensionType.reset();
  }
  const std::optional<ContentSignature> signature = contentSignatureOf(head);
  const bool mismatch = isMismatch(signature, extensionType, platformType);
  const std::string result = mismatch ? "Mismatch detected" : "No obvious mismatch";

  std::vector<InsightRow> rows;
  rows.emplace_back("Filename Extension", extension.empty() ? "None" : "." + extension);
  if (extensionType) rows.emplace_back("Extension Suggests", extensionType->describe());
  if (platformType) rows.emplace_back("macOS Type", platformType->describe());
  rows.emplace_back("Content Signature",
                    signature ? signature->typeName : "No known signature detected");
  rows.emplace_back("Type Match", result);
  accumulators.sections.emplace_back(
      "Type Verification", mismatch ? "exclamationmark.triangle.fill" : "checkmark.seal.fill",
      std::move(rows));
  accumulators.summaryItems.emplace_back("Type Verification");

  accumulators.setRaw("Type Verification Extension", extension);
  accumulators.setRaw("Type Verification Expected Type",
                      extensionType ? extensionType->identifier() : "Unknown");
  accumulators.setRaw("Type Verification macOS Type",
                      platformType ? platformType->identifier() : "Unknown");
  accumulators.setRaw("Type Verification Signature", signature ? signature->typeName : "Unknown");
  accumulators.setRaw("Type Verification Result", result);

  if (mismatch) {
    accumulators.findings.emplace_back(
        "File type does not match its name",
        "The filename extension suggests one kind of file, but Lumenscribe detected content "
        "consistent with another type. Treat the file cautiously until you know why it was "
        "renamed or mislabeled.",
        PrivacyLevel::sensitive);
  } else if (extension.empty() && signature) {
    accumulators.findings.emplace_back(
        "File has no extension",
        "The filename does not claim a type, but Lumenscribe identified its contents as " +
            signature->typeName + ".",
        PrivacyLevel::neutral);
  }
}

}  // namespace lumenscribe
