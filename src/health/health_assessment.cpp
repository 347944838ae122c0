// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "health/health_assessment.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "core/path_text.h"
#include "platform/child_process.h"
#include "platform/file_descriptor.h"
#include "platform/mime_database.h"

namespace lumenscribe {

namespace {

using platform::DecoderError;
using platform::decoder::ImageDecodeStatus;

// The image formats the loaders left unblocked in the decoder decode. An image type outside
// this list that no loader takes (a BMP, a camera raw, an SVG) is one we cannot verify,
// which is not damage; a listed one that no loader takes is.
constexpr std::array<std::string_view, 11> kDecodableImageTypes = {
    "image/jpeg", "image/png",           "image/gif",           "image/webp",
    "image/tiff", "image/heif",          "image/heic",          "image/avif",
    "image/apng", "image/heif-sequence", "image/heic-sequence",
};

struct Verdict {
  std::string title;
  std::string detail;
  PrivacyLevel level = PrivacyLevel::neutral;
  std::string icon;
  bool makesFinding = false;
};

Verdict looksIntact() {
  return {"Looks intact", "Lumenscribe did not find an obvious structural problem.",
          PrivacyLevel::neutral, "checkmark.shield.fill", false};
}

Verdict possibleDamage(std::string detail) {
  return {"Possible damage", std::move(detail), PrivacyLevel::sensitive,
          "exclamationmark.triangle.fill", true};
}

Verdict verificationLimited(std::string detail) {
  return {"Verification limited", std::move(detail), PrivacyLevel::notice, "stethoscope", true};
}

// A check's own detail is used only when it is bad news; "Looks intact" has its own.
Verdict verdictFor(const StructureCheckResult& check) {
  if (check.isProblem) return possibleDamage(check.detail);
  if (check.isLimited) return verificationLimited(check.detail);
  return looksIntact();
}

StructureCheckResult problem(std::string status, std::string detail) {
  return {std::move(status), std::move(detail), true, false};
}

StructureCheckResult limited(std::string status, std::string detail) {
  return {std::move(status), std::move(detail), false, true};
}

bool isUndecodableImageType(std::span<const std::byte> head) {
  const auto type = platform::contentTypeForData(head);
  if (!type || !type->conformsTo(AbstractType::image)) return false;
  return std::none_of(kDecodableImageTypes.begin(), kDecodableImageTypes.end(),
                      [&](std::string_view name) { return type->conformsTo(name); });
}

// The decoder could give no answer for this file. A crash, a hang or a decode that ran out
// of memory is no proof of damage, but nothing was verified either.
StructureCheckResult decoderGaveNoAnswer(std::error_code error, std::string_view decoderName) {
  if (error == DecoderError::stopped) {
    return limited("Decoder stopped",
                   "The " + std::string(decoderName) +
                       " stopped while reading this file, so Lumenscribe could not check its "
                       "structure. Damaged files can do this, and so can files made to attack "
                       "the programs that open them.");
  }
  return limited("Could not check", "Lumenscribe could not start its " + std::string(decoderName) +
                                        ", so it could not check the structure of this file.");
}

struct Check {
  std::string rowLabel;
  std::string rowValue;
  Verdict verdict;
};

Check pdfCheck(const platform::OpenedItem& item, platform::DecoderClient& decoder) {
  const auto pdf = decoder.pdfFacts(item);
  if (!pdf) {
    const StructureCheckResult stopped = decoderGaveNoAnswer(pdf.error(), "PDF reader");
    return {"PDF Structure", stopped.status, verdictFor(stopped)};
  }
  if (!pdf->opened) {
    return {"PDF Structure", "Could not open",
            possibleDamage(
                "The file identifies as a PDF, but PDFKit could not open its document structure.")};
  }
  if (pdf->encrypted && pdf->locked) {
    return {"PDF Structure", "Locked / encrypted",
            verificationLimited("The PDF is encrypted and locked, so Lumenscribe cannot fully "
                                "verify its internal contents.")};
  }
  if (pdf->pageCount > 0) {
    const std::string pages = std::to_string(pdf->pageCount);
    return {"PDF Structure", pages + (pdf->pageCount == 1 ? " page readable" : " pages readable"),
            looksIntact()};
  }
  return {
      "PDF Structure", "No readable pages",
      possibleDamage("The file identifies as a PDF, but Lumenscribe could not find a readable page "
                     "structure.")};
}

// The kind of file decides the check; the content signature plays no part, so a PNG named
// notes.txt gets the read test and a ZIP is recognised by its extension alone.
Check structureCheck(const platform::OpenedItem& item, platform::DecoderClient& decoder) {
  const std::string extension = asciiLower(pathExtension(item.url()));
  const auto& platformType = item.contentType();
  if (platformType && platformType->conformsTo(AbstractType::image)) {
    const StructureCheckResult image = checkImageStructure(item, decoder);
    return {"Image Structure", image.status, verdictFor(image)};
  }
  if ((platformType && platformType->conformsTo(AbstractType::pdf)) || extension == "pdf") {
    return pdfCheck(item, decoder);
  }
  if (extension == "zip") {
    const StructureCheckResult zip = testZipIntegrity(item);
    return {"ZIP Structure", zip.status, verdictFor(zip)};
  }
  if (basicReadTest(item)) return {"Basic Read Test", "Passed", looksIntact()};
  return {"Basic Read Test",
          "Failed",
          {"Possible read problem",
           "Lumenscribe could not read both the beginning and end of this file.",
           PrivacyLevel::sensitive, "exclamationmark.triangle.fill", true}};
}

}  // namespace

StructureCheckResult checkImageStructure(const platform::OpenedItem& item,
                                         platform::DecoderClient& decoder) {
  const auto status = decoder.imageStatus(item);
  if (!status) return decoderGaveNoAnswer(status.error(), "image decoder");
  switch (*status) {
    case ImageDecodeStatus::noLoader:
      if (isUndecodableImageType(item.head())) {
        return limited("Unknown type", "ImageIO could not determine a supported image type.");
      }
      return problem("No readable image", "ImageIO found no readable image frames.");
    case ImageDecodeStatus::noImage:
      return problem("No readable image", "ImageIO found no readable image frames.");
    case ImageDecodeStatus::decodeFailed:
      return problem("Decode failed",
                     "The file identifies as an image, but ImageIO could not decode its pixel "
                     "data. The image may be damaged, incomplete, or truncated.");
    case ImageDecodeStatus::complete:
      return {"Complete",
              "ImageIO reports a complete image structure and the pixel data decoded "
              "successfully.",
              false, false};
    case ImageDecodeStatus::incomplete:
      return problem("Incomplete", "ImageIO reports that the image data is incomplete.");
    case ImageDecodeStatus::headerInvalid:
    case ImageDecodeStatus::invalidData:
      return problem("Invalid data", "ImageIO reports invalid image data.");
    case ImageDecodeStatus::headerTruncated:
      return problem("Unexpected end of file",
                     "The image appears truncated; ImageIO reached the end of the file "
                     "unexpectedly.");
  }
  return problem("Could not open",
                 "ImageIO could not open the image source. The file may be damaged or "
                 "unsupported.");
}

StructureCheckResult testZipIntegrity(const platform::OpenedItem& item,
                                      const std::filesystem::path& unzipTool) {
  // unzip opens the archive we opened, as its own descriptor 3: not the path, which may name
  // another file by now and whose *, ? and [ unzip would read as a pattern.
  constexpr int kArchive = 3;
  const platform::InheritedDescriptor archive{item.descriptor(), kArchive};
  const auto run =
      item.isReadable()
          ? platform::runChildProcess(unzipTool, {"-tqq", "/dev/fd/" + std::to_string(kArchive)},
                                      platform::ChildOutput::merged, 64 * 1024 * 1024,
                                      std::span(&archive, 1))
          : std::nullopt;
  if (!run) {
    return limited("Could not test", "Lumenscribe could not run the ZIP integrity test.");
  }
  if (run->exitStatus == 0) {
    return {"Integrity test passed", "The ZIP archive passed a non-extracting integrity test.",
            false, false};
  }
  // Output that is not UTF-8 says nothing; unzip's "unable to get password" counts too.
  const std::string output = validUtf8(run->output) == run->output ? asciiLower(run->output) : "";
  if (output.find("password") != std::string::npos ||
      output.find("encrypted") != std::string::npos) {
    return limited("Encrypted / password required",
                   "The ZIP appears encrypted or password-protected, so Lumenscribe could not "
                   "fully verify its contents.");
  }
  return problem("Integrity test failed",
                 "The ZIP archive did not pass its integrity test and may be damaged or "
                 "truncated.");
}

bool basicReadTest(const platform::OpenedItem& item) {
  const std::int64_t size = item.size();
  if (size < 1 || !item.isReadable()) return false;
  const int fd = item.descriptor();
  std::array<std::byte, 1> byte{};
  const auto first = platform::readFullyAt(fd, byte, 0);
  if (!first || *first == 0) return false;
  if (size == 1) return true;
  const auto last = platform::readFullyAt(fd, byte, size - 1);
  return last && *last == 1;
}

void assessFileHealth(const platform::OpenedItem& item, platform::DecoderClient& decoder,
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
  } else if (!item.isReadable()) {
    rows.emplace_back("Structure", "Could not verify");
    verdict = {"Unreadable", "Lumenscribe cannot read this file with the current permissions.",
               PrivacyLevel::sensitive, "exclamationmark.triangle.fill", true};
  } else {
    Check check = structureCheck(item, decoder);
    rows.emplace_back(std::move(check.rowLabel), std::move(check.rowValue));
    verdict = std::move(check.verdict);
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

}  // namespace lumenscribe
