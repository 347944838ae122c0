// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "health/health_assessment.h"

#include <unistd.h>

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "core/path_text.h"
#include "platform/child_process.h"
#include "platform/file_descriptor.h"
#include "platform/image_decoder.h"
#include "platform/pdf_document.h"

namespace lumenscribe {

namespace {

using platform::ImageDecodeStatus;

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

bool isReadable(const std::filesystem::path& url) { return ::access(url.c_str(), R_OK) == 0; }

struct Check {
  std::string rowLabel;
  std::string rowValue;
  Verdict verdict;
};

Check pdfCheck(const std::filesystem::path& url) {
  const auto pdf = platform::openPdf(url);
  if (!pdf) {
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
Check structureCheck(const std::filesystem::path& url,
                     const std::optional<ContentType>& platformType, std::int64_t size) {
  const std::string extension = asciiLower(pathExtension(url));
  if (platformType && platformType->conformsTo(AbstractType::image)) {
    const StructureCheckResult image = checkImageStructure(url);
    return {"Image Structure", image.status, verdictFor(image)};
  }
  if ((platformType && platformType->conformsTo(AbstractType::pdf)) || extension == "pdf") {
    return pdfCheck(url);
  }
  if (extension == "zip") {
    const StructureCheckResult zip = testZipIntegrity(url);
    return {"ZIP Structure", zip.status, verdictFor(zip)};
  }
  if (basicReadTest(url, size)) return {"Basic Read Test", "Passed", looksIntact()};
  return {"Basic Read Test",
          "Failed",
          {"Possible read problem",
           "Lumenscribe could not read both the beginning and end of this file.",
           PrivacyLevel::sensitive, "exclamationmark.triangle.fill", true}};
}

}  // namespace

StructureCheckResult checkImageStructure(const std::filesystem::path& url) {
  switch (platform::decodeImageStatus(url)) {
    case ImageDecodeStatus::cannotOpen:
      return problem("Could not open",
                     "ImageIO could not open the image source. The file may be damaged or "
                     "unsupported.");
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
    case ImageDecodeStatus::unknownImageType:
      return limited("Unknown type", "ImageIO could not determine a supported image type.");
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

StructureCheckResult testZipIntegrity(const std::filesystem::path& url,
                                      const std::filesystem::path& unzipTool) {
  // unzip reads *, ? and [ in an archive name as a pattern and tests whichever files match
  // it, so such a name is handed over as our open descriptor of the file instead.
  std::string archive = url.string();
  platform::UniqueFd held;
  if (archive.find_first_of("*?[") != std::string::npos) {
    held = platform::openForReading(url);
    if (held) archive = "/proc/" + std::to_string(::getpid()) + "/fd/" + std::to_string(held.get());
  } else if (archive.starts_with('-')) {
    archive = "./" + archive;  // not an option
  }
  const auto run = platform::runChildProcess(unzipTool, {"-tqq", archive});
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

bool basicReadTest(const std::filesystem::path& url, std::int64_t size) {
  if (size < 1) return false;
  const platform::UniqueFd fd = platform::openForReading(url);
  if (!fd) return false;
  std::array<std::byte, 1> byte{};
  const auto first = platform::readFullyAt(fd.get(), byte, 0);
  if (!first || *first == 0) return false;
  if (size == 1) return true;
  const auto last = platform::readFullyAt(fd.get(), byte, size - 1);
  return last && *last == 1;
}

void assessFileHealth(const std::filesystem::path& url,
                      const std::optional<ContentType>& platformType, std::int64_t size,
                      Accumulators& accumulators) {
  std::vector<InsightRow> rows;
  rows.emplace_back("Readable", isReadable(url) ? "Yes" : "No");

  Verdict verdict;
  if (size == 0) {
    rows.emplace_back("Structure", "No content");
    verdict = {"Empty file",
               "This file contains zero bytes. That may be intentional, but it has no content to "
               "inspect.",
               PrivacyLevel::notice, "stethoscope", true};
  } else if (!isReadable(url)) {
    // Asked again rather than reusing the row: the answer is what the check runs on.
    rows.emplace_back("Structure", "Could not verify");
    verdict = {"Unreadable", "Lumenscribe cannot read this file with the current permissions.",
               PrivacyLevel::sensitive, "exclamationmark.triangle.fill", true};
  } else {
    Check check = structureCheck(url, platformType, size);
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
