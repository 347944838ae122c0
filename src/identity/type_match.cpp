// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/type_match.h"

#include <algorithm>
#include <array>
#include <string>

#include "core/path_text.h"
#include "platform/mime_database.h"
#include "platform/unicode_text.h"

namespace lumenscribe {

namespace {

// Formats written as text that the MIME database files outside text/plain, so that a PEM
// certificate, an XBM bitmap or a font's metrics read as text fit their own names.
constexpr std::array<std::string_view, 10> kTextWrittenTypes = {
    "application/x-x509-ca-cert",        // PEM certificates (.crt, .pem)
    "application/pkix-cert",             // .cer, often PEM
    "application/pkcs10",                // certificate requests
    "application/pkix-crl",              // revocation lists
    "application/x-pkcs7-certificates",  // .p7b bundles, often PEM
    "application/x-font-afm",            // Adobe font metrics
    "application/x-font-bdf",            // bitmap fonts in text
    "image/x-xbitmap",                   // XBM: a C declaration
    "image/x-xpixmap",                   // XPM: a C declaration
    "image/x-portable-anymap",           // PBM, PGM and PPM in their ASCII forms
};

// Extensions that also name text formats the database does not know: .pub is an OpenSSH
// public key far more often than the Publisher document the database has for it.
constexpr std::array<std::string_view, 1> kTextWrittenExtensions = {"pub"};

// Parents too general to make two types kin.
constexpr std::array<std::string_view, 3> kTooGeneralParents = {
    "application/octet-stream", "text/plain", "application/x-executable"};

bool isTooGeneral(std::string_view name) {
  return std::find(kTooGeneralParents.begin(), kTooGeneralParents.end(), name) !=
         kTooGeneralParents.end();
}

// One inherits the other, or both belong to the same container family (AIFF and AIFC, Ogg
// Vorbis and Ogg Opus, a Nikon raw and TIFF).
bool related(const ContentType& a, const ContentType& b) {
  if (a.conformsTo(b.identifier()) || b.conformsTo(a.identifier())) return true;
  return std::any_of(a.ancestors().begin(), a.ancestors().end(), [&](const std::string& parent) {
    return !isTooGeneral(parent) && b.conformsTo(parent);
  });
}

bool isTextWritten(const ContentType& type) {
  return type.conformsTo(AbstractType::text) ||
         std::any_of(kTextWrittenTypes.begin(), kTextWrittenTypes.end(),
                     [&](std::string_view name) { return type.conformsTo(name); });
}

}  // namespace

NameClaim claimOfName(std::string_view fileName) {
  NameClaim claim;
  const std::string extension = platform::lowerCased(validUtf8(pathExtension(fileName)));
  if (extension.empty()) return claim;
  // A type the database knows only for folders claims nothing about a file's data.
  const auto isData = [](const ContentType& type) { return type.conformsTo(AbstractType::data); };
  for (ContentType& type : platform::contentTypesForFileName(fileName)) {
    if (isData(type)) claim.types.push_back(std::move(type));
  }
  claim.primary = platform::contentTypeForExtension(extension);
  if (claim.primary && !isData(*claim.primary)) claim.primary.reset();
  // Some globs match whole names, not extensions; the extension's own type still counts.
  if (claim.primary && std::none_of(claim.types.begin(), claim.types.end(),
                                    [&](const ContentType& t) { return t == *claim.primary; })) {
    claim.types.push_back(*claim.primary);
  }
  claim.mayBeText = std::find(kTextWrittenExtensions.begin(), kTextWrittenExtensions.end(),
                              extension) != kTextWrittenExtensions.end();
  return claim;
}

bool contentFitsType(const ContentSignature& content, const ContentType& claimed) {
  std::optional<ContentType> type;
  if (!content.mimeType.empty()) type = platform::contentTypeForName(content.mimeType);

  if (content.category == "executable") {
    if (!isProgramType(claimed)) return false;
    const bool script = type && type->conformsTo(AbstractType::text);
    return script || !claimed.conformsTo(AbstractType::text);
  }
  if (content.category == "text" && isTextWritten(claimed)) return true;
  if (type && related(*type, claimed)) return true;

  const bool sameCategory = contentTypeMatchesCategory(claimed, content.category) ||
                            (content.alsoAudio && contentTypeMatchesCategory(claimed, "audio"));
  if (!sameCategory) return false;
  // Two different pictures or sounds: each has its own decoder and its own risks.
  const bool concrete = content.category == "image" || content.category == "audio";
  return !(concrete && type);
}

bool contentFitsName(const ContentSignature& content, const NameClaim& claim) {
  if (claim.mayBeText && content.category == "text") return true;
  return std::any_of(claim.types.begin(), claim.types.end(),
                     [&](const ContentType& type) { return contentFitsType(content, type); });
}

}  // namespace lumenscribe
