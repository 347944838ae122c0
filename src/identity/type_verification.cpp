// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/type_verification.h"

#include <algorithm>
#include <string>
#include <vector>

#include "core/path_text.h"
#include "identity/content_detection.h"
#include "identity/type_match.h"
#include "platform/unicode_text.h"

namespace lumenscribe {

namespace {

// The name claims a type that the content contradicts, and the desktop's own type for the
// file does not vouch for the content either.
bool isMismatch(const std::optional<ContentSignature>& signature, const NameClaim& claim,
                const std::optional<ContentType>& platformType) {
  if (!signature || claim.types.empty()) return false;
  if (contentFitsName(*signature, claim)) return false;
  return !platformType || !contentFitsType(*signature, *platformType);
}

// The type shown for the name: the one of its types that the content fits, else the one a
// file manager would show.
std::optional<ContentType> suggestedType(const std::optional<ContentSignature>& signature,
                                         const NameClaim& claim) {
  if (signature) {
    const auto fitting =
        std::find_if(claim.types.begin(), claim.types.end(),
                     [&](const ContentType& type) { return contentFitsType(*signature, type); });
    if (fitting != claim.types.end()) return *fitting;
  }
  if (claim.primary) return claim.primary;
  if (!claim.types.empty()) return claim.types.front();
  return std::nullopt;
}

std::string mismatchDetail(const ContentSignature& signature) {
  if (signature.category == "executable") {
    return "The filename extension suggests one kind of file, but the content is a program (" +
           signature.typeName +
           "). Opening it may run it: do not open it until you know why it was renamed or "
           "mislabeled.";
  }
  return "The filename extension suggests one kind of file, but Lumenscribe detected content "
         "consistent with another type. Treat the file cautiously until you know why it was "
         "renamed or mislabeled.";
}

}  // namespace

bool verifyFileType(const platform::OpenedItem& item, Accumulators& accumulators) {
  return verifyFileType(item, detectContentSignature(item), accumulators);
}

bool verifyFileType(const platform::OpenedItem& item,
                    const std::optional<ContentSignature>& signature, Accumulators& accumulators) {
  return verifyFileType(item.url(), signature, item.contentType(), accumulators);
}

bool verifyFileType(const std::filesystem::path& url,
                    const std::optional<ContentSignature>& signature,
                    const std::optional<ContentType>& platformType, Accumulators& accumulators) {
  // The extension shown and stored is valid UTF-8, so that a name with stray bytes can
  // still be printed and written to JSON.
  const std::string extension = platform::lowerCased(validUtf8(pathExtension(url)));
  const NameClaim claim = extension.empty() ? NameClaim{} : claimOfName(lastPathComponent(url));
  const std::optional<ContentType> extensionType = suggestedType(signature, claim);
  const bool mismatch = isMismatch(signature, claim, platformType);
  const std::string result = mismatch ? "Mismatch detected" : "No obvious mismatch";

  std::vector<InsightRow> rows;
  rows.emplace_back("Filename Extension", extension.empty() ? "None" : "." + extension);
  if (extensionType) rows.emplace_back("Extension Suggests", extensionType->describe());
  if (platformType) rows.emplace_back("MIME Type", platformType->describe());
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
    accumulators.findings.emplace_back("File type does not match its name",
                                       mismatchDetail(*signature), PrivacyLevel::sensitive);
  } else if (extension.empty() && signature) {
    accumulators.findings.emplace_back(
        "File has no extension",
        "The filename does not claim a type, but Lumenscribe identified its contents as " +
            signature->typeName + ".",
        PrivacyLevel::neutral);
  }
  return mismatch;
}

}  // namespace lumenscribe
