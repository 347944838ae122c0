// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "health/health_assessment.h"

#include <array>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "core/path_text.h"
#include "identity/content_detection.h"
#include "platform/mime_database.h"

namespace lumenscribe {

namespace {

using platform::decoder::CompressedFormat;

struct Verdict {
  std::string title;
  std::string detail;
  PrivacyLevel level = PrivacyLevel::neutral;
  std::string icon;
  bool makesFinding = false;
};

constexpr std::string_view kIntactDetail =
    "Lumenscribe did not find an obvious structural problem.";

// A check's own detail is used only when it is bad news; "Looks intact" has its own, with
// the check's remark after it.
Verdict verdictFor(std::string_view label, const StructureCheckResult& check) {
  if (check.isProblem && label == "Basic Read Test") {
    return {"Possible read problem", check.detail, PrivacyLevel::sensitive,
            "exclamationmark.triangle.fill", true};
  }
  if (check.isProblem) {
    return {"Possible damage", check.detail, PrivacyLevel::sensitive,
            "exclamationmark.triangle.fill", true};
  }
  if (check.isLimited) {
    return {"Verification limited", check.detail, PrivacyLevel::notice, "stethoscope", true};
  }
  std::string detail(kIntactDetail);
  if (!check.intactNote.empty()) detail += " " + check.intactNote;
  return {"Looks intact", std::move(detail), PrivacyLevel::neutral, "checkmark.shield.fill", false};
}

struct CompressedType {
  std::string_view mimeType;
  CompressedFormat format;
};

// The streams the decompression test reads, by the MIME type of their content or name.
constexpr std::array kTestedStreams = {
    CompressedType{"application/gzip", CompressedFormat::gzip},
    CompressedType{"application/x-bzip", CompressedFormat::bzip2},
    CompressedType{"application/x-xz", CompressedFormat::xz},
    CompressedType{"application/zstd", CompressedFormat::zstd},
};

std::optional<CompressedFormat> testedStream(const std::optional<ContentType>& type) {
  if (!type) return std::nullopt;
  for (const CompressedType& stream : kTestedStreams) {
    if (type->conformsTo(stream.mimeType)) return stream.format;
  }
  return std::nullopt;
}

StructureCheckChoice byContent(const ContentSignature& signature,
                               const std::optional<ContentType>& platformType) {
  std::optional<ContentType> type;
  if (!signature.mimeType.empty()) type = platform::contentTypeForName(signature.mimeType);
  const std::string& category = signature.category;
  if (category == "image") return {StructureCheckKind::image, type ? type : platformType, {}};
  if (category == "pdf") return {StructureCheckKind::pdf, {}, {}};
  if (category == "archive" && type && type->conformsTo("application/zip")) {
    return {StructureCheckKind::zip, {}, {}};
  }
  if (category == "compressed") {
    if (const auto format = testedStream(type)) {
      return {StructureCheckKind::compressedStream, {}, *format};
    }
  }
  if (category == "audio" || category == "video") return {StructureCheckKind::media, {}, {}};
  return {};
}

// What the name (and the desktop's type for it) promises, for content that proves nothing
// more than being text, or nothing at all.
StructureCheckChoice byName(const platform::OpenedItem& item) {
  const std::string extension = asciiLower(pathExtension(item.url()));
  const std::optional<ContentType>& type = item.contentType();
  if (type && type->conformsTo(AbstractType::image)) {
    return {StructureCheckKind::image, type, {}};
  }
  if ((type && type->conformsTo(AbstractType::pdf)) || extension == "pdf") {
    return {StructureCheckKind::pdf, {}, {}};
  }
  if ((type && type->conformsTo("application/zip")) || extension == "zip") {
    return {StructureCheckKind::zip, {}, {}};
  }
  if (const auto format = testedStream(type)) {
    return {StructureCheckKind::compressedStream, {}, *format};
  }
  // A playlist is text that the database files under audio.
  if (type && !type->conformsTo(AbstractType::text) &&
      (type->conformsTo(AbstractType::audio) || type->conformsTo(AbstractType::movie))) {
    return {StructureCheckKind::media, {}, {}};
  }
  return {};
}

std::pair<std::string, StructureCheckResult> runCheck(const platform::OpenedItem& item,
                                                      const StructureCheckChoice& choice,
                                                      platform::DecoderClient& decoder) {
  switch (choice.kind) {
    case StructureCheckKind::image:
      return {"Image Structure", checkImageStructure(item, decoder, choice.imageType)};
    case StructureCheckKind::pdf: return {"PDF Structure", checkPdfStructure(item, decoder)};
    case StructureCheckKind::zip: return {"ZIP Structure", testZipIntegrity(item)};
    case StructureCheckKind::compressedStream:
      return {"Compressed Stream", testCompressedStream(item, choice.format, decoder)};
    case StructureCheckKind::media: return {"Media Structure", checkMediaStructure(item, decoder)};
    case StructureCheckKind::basicRead: break;
  }
  if (basicReadTest(item)) return {"Basic Read Test", {"Passed", "", false, false, {}}};
  return {"Basic Read Test",
          {"Failed",
           "Lumenscribe could not read both the beginning and end of this file.",
           true,
           false,
           {}}};
}

}  // namespace

StructureCheckChoice chooseStructureCheck(const platform::OpenedItem& item,
                                          const std::optional<ContentSignature>& signature) {
  // Content of a kind that has no check of its own (a program, a font) is read, not judged
  // by a name that it contradicts.
  if (signature && signature->category != "text") return byContent(*signature, item.contentType());
  return byName(item);
}

StructureCheckOutcome checkFileStructure(const platform::OpenedItem& item,
                                         const std::optional<ContentSignature>& signature,
                                         platform::DecoderClient& decoder) {
  if (item.size() == 0 || !item.isReadable()) return std::nullopt;
  const StructureCheckChoice choice = chooseStructureCheck(item, signature);
  try {
    return runCheck(item, choice, decoder);
  } catch (const std::exception&) {
    // Out of memory in our own process: the check tells nothing either way.
    return std::pair<std::string, StructureCheckResult>{
        "Structure",
        {"Could not verify",
         "Lumenscribe could not complete the structural check "
         "of this file.",
         false,
         true,
         {}}};
  }
}

void assessFileHealth(const platform::OpenedItem& item, const StructureCheckOutcome& outcome,
                      Accumulators& accumulators) {
  std::vector<InsightRow> rows;
  rows.emplace_back("Readable", item.isReadable() ? "Yes" : "No");

  Verdict verdict;
  if (item.size() == 0) {
    rows.emplace_back("Structure", "No content");
    verdict = {"Empty file",
               "This file contains zero bytes. That may be intentional, but it has no content to "
               "inspect.",
               PrivacyLevel::notice, "stethoscope", true};
  } else if (!item.isReadable() || !outcome) {
    rows.emplace_back("Structure", "Could not verify");
    verdict = {"Unreadable", "Lumenscribe cannot read this file with the current permissions.",
               PrivacyLevel::sensitive, "exclamationmark.triangle.fill", true};
  } else {
    verdict = verdictFor(outcome->first, outcome->second);
    rows.emplace_back(outcome->first, outcome->second.status);
  }
  rows.insert(rows.begin(), InsightRow("Assessment", verdict.title));

  accumulators.sections.emplace_back("File Health", verdict.icon, std::move(rows));
  accumulators.summaryItems.emplace_back("File Health");
  accumulators.setRaw("File Health Assessment", verdict.title);
  accumulators.setRaw("File Health Detail", verdict.detail);
  if (verdict.makesFinding) {
    accumulators.findings.emplace_back(verdict.title, verdict.detail, verdict.level);
  }
}

void assessFileHealth(const platform::OpenedItem& item,
                      const std::optional<ContentSignature>& signature,
                      platform::DecoderClient& decoder, Accumulators& accumulators) {
  assessFileHealth(item, checkFileStructure(item, signature, decoder), accumulators);
}

void assessFileHealth(const platform::OpenedItem& item, platform::DecoderClient& decoder,
                      Accumulators& accumulators) {
  assessFileHealth(item, detectContentSignature(item), decoder, accumulators);
}

}  // namespace lumenscribe
