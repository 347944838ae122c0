// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "health/health_explanation_tables.h"

#include <array>
#include <string_view>

namespace lumenscribe {

namespace {

struct ExplanationText {
  ExplanationId id;
  std::string_view meaning;
  std::array<std::string_view, 3> knownFacts;  // empty entries are unused
  std::array<std::string_view, 3> nextSteps;
};

// clang-format off
constexpr std::array kExplanations = {
    ExplanationText{ExplanationId::imageDecodeFailed,
        "The file has enough JPEG/PNG-style structure to identify itself as an image, but the "
        "image decoder could not turn the encoded image data into pixels. That usually means the file is "
        "incomplete, truncated, or damaged.",
        {"The filename/type identification is believable.",
         "The file itself is readable from disk.",
         "The failure occurs when Lumenscribe asks the image decoder to decode the actual image "
         "data."},
        {"Try opening the original in an image viewer or the camera manufacturer's software.",
         "Re-copy the file from the original card, drive, or source if one exists.",
         "Do not treat renaming the extension as a repair."}},
    ExplanationText{ExplanationId::imageTruncated,
        "The image structure ends before the image decoder expected it to. The file may have "
        "been interrupted while copying, downloading, or saving.",
        {"Lumenscribe can identify the image format.",
         "The image data does not appear structurally complete."},
        {"Re-copy or re-download the original.",
         "Compare the damaged file with another copy using Lumenscribe Compare."}},
    ExplanationText{ExplanationId::imageInvalidData,
        "The image decoder found data that does not conform to the image structure it expected.",
        {"The file is readable.",
         "The encoded image payload contains invalid structure."},
        {"Locate another copy of the image if possible.",
         "Compare hashes against a known-good original."}},
    ExplanationText{ExplanationId::pdfLocked,
        "Lumenscribe can identify the PDF, but encryption prevents a full structural inspection "
        "until the document is unlocked.",
        {"The PDF container is recognizable.",
         "The limitation is access, not necessarily damage."},
        {"Open the PDF with the proper password if you are authorized to do so.",
         "Inspect the unlocked copy again if you need deeper verification."}},
    ExplanationText{ExplanationId::pdfUnusable,
        "The file claims to be a PDF, but the PDF reader could not build a usable document/page "
        "structure from it.",
        {"The file can be read from disk.",
         "The PDF structure is not usable enough for normal inspection."},
        {"Try another copy of the PDF.",
         "Re-download or re-export it from the source application."}},
    ExplanationText{ExplanationId::zipEncrypted,
        "The archive appears to require a password, so Lumenscribe cannot fully test the files "
        "inside it.",
        {"The ZIP container is recognizable.",
         "Verification is limited by encryption rather than a confirmed integrity failure."},
        {"Use the password only if you trust the source and are authorized to open it.",
         "Inspect the extracted contents separately afterward."}},
    ExplanationText{ExplanationId::zipIntegrityFailed,
        "The ZIP archive failed a non-extracting integrity test. Its directory or one or more "
        "stored entries may be damaged.",
        {"Lumenscribe did not need to extract the archive to find the problem.",
         "A failed integrity test is stronger evidence than an unusual filename alone."},
        {"Re-download or re-copy the archive.",
         "Compare it with another copy if one is available."}},
    ExplanationText{ExplanationId::emptyFile,
        "The file contains zero bytes. That can be intentional for placeholder files, but there "
        "is no content for Lumenscribe to inspect.",
        {"The filesystem entry exists.",
         "The file has no payload."},
        {"Confirm whether an empty file was actually expected.",
         "Re-copy or regenerate it if content should be present."}},
    ExplanationText{ExplanationId::unreadable,
        "Lumenscribe cannot reliably read the file from disk. Permissions, storage problems, or "
        "an incomplete file operation may be involved.",
        {"The problem occurs before meaningful content inspection can finish."},
        {"Check the file's permissions in your file manager and the storage device.",
         "Try copying the file to a local writable folder and inspect that copy."}},
    ExplanationText{ExplanationId::uncertain,
        "Lumenscribe found enough uncertainty that it does not want to call the file healthy "
        "without qualification.",
        {"The health result is based on structural behavior, not on the filename alone."},
        {"Try another copy of the file if one is available.",
         "Compare it against a known-good version."}},
};
// clang-format on

std::vector<std::string> lines(const std::array<std::string_view, 3>& texts) {
  std::vector<std::string> kept;
  for (std::string_view text : texts) {
    if (!text.empty()) kept.emplace_back(text);
  }
  return kept;
}

}  // namespace

HealthExplanation explanationText(ExplanationId id) {
  for (const auto& entry : kExplanations) {
    if (entry.id == id) {
      return {std::string(entry.meaning), lines(entry.knownFacts), lines(entry.nextSteps)};
    }
  }
  return explanationText(ExplanationId::uncertain);
}

}  // namespace lumenscribe
