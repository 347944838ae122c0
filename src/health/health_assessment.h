// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "core/accumulators.h"
#include "health/structure_checks.h"
#include "identity/content_signature.h"
#include "platform/decoder_client.h"
#include "platform/opened_item.h"

namespace lumenscribe {

/// The structural checks, one of which judges a regular file.
enum class StructureCheckKind { image, pdf, zip, compressedStream, media, basicRead };

/// The check a file gets, and what it needs to know.
struct StructureCheckChoice {
  StructureCheckKind kind = StructureCheckKind::basicRead;
  /// For the image check: the image type the file is taken for.
  std::optional<ContentType> imageType;
  /// For the decompression test.
  platform::decoder::CompressedFormat format = platform::decoder::CompressedFormat::gzip;
};

/// The check follows the content when its signature names a format (a PDF named .jpg gets
/// the PDF check, every ZIP-based format the ZIP test, a gzip named .txt the decompression
/// test), and the name only when the content is unknown or merely text.
StructureCheckChoice chooseStructureCheck(const platform::OpenedItem& item,
                                          const std::optional<ContentSignature>& signature);

/// The check a file got: its row label and outcome; nothing for an empty or unreadable
/// file, which gets none.
using StructureCheckOutcome = std::optional<std::pair<std::string, StructureCheckResult>>;

/// Runs the check chosen for the item. Blocks while a decoder or unzip works; never fails.
/// The driver runs it beside the fingerprint.
StructureCheckOutcome checkFileStructure(const platform::OpenedItem& item,
                                         const std::optional<ContentSignature>& signature,
                                         platform::DecoderClient& decoder);

/// The "File Health" section of a regular file: the check chosen for it (an image decode,
/// a PDF structure check, a ZIP test run, a decompression test, a demux of every media
/// packet, or else a first/last byte read), turned into one of the verdicts "Empty file",
/// "Unreadable", "Looks intact", "Verification limited", "Possible damage" or "Possible read
/// problem". Adds the section, "File Health Assessment" and "File Health Detail", the
/// summary item, and a finding for every verdict but "Looks intact". Format libraries run in
/// `decoder`'s worker; a worker that stops on the file limits the verdict. Never fails.
void assessFileHealth(const platform::OpenedItem& item, const StructureCheckOutcome& check,
                      Accumulators& accumulators);

/// The same, running the check now.
void assessFileHealth(const platform::OpenedItem& item,
                      const std::optional<ContentSignature>& signature,
                      platform::DecoderClient& decoder, Accumulators& accumulators);

/// The same, detecting the item's content first.
void assessFileHealth(const platform::OpenedItem& item, platform::DecoderClient& decoder,
                      Accumulators& accumulators);

}  // namespace lumenscribe
