// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "core/content_type.h"
#include "platform/decoder_client.h"
#include "platform/opened_item.h"

namespace lumenscribe {

/// The outcome of one structural check. `isProblem` (damage found) and `isLimited` (health
/// could not be confirmed, no damage found) are never both true.
struct StructureCheckResult {
  std::string status;  // the value of the check's row, e.g. "Complete"
  std::string detail;  // one sentence
  bool isProblem = false;
  bool isLimited = false;
  /// For a check that passed with remarks (unzip's warnings, a PDF's recovered problems):
  /// a sentence said after the "Looks intact" detail.
  std::string intactNote;

  friend bool operator==(const StructureCheckResult&, const StructureCheckResult&) = default;
};

/// Decodes image 0 and says how complete it is. `imageType` is what the file is taken for
/// (its content's type, or its name's): an image that no loader we allow reads is one we
/// cannot verify, unless it is of a type we decode.
StructureCheckResult checkImageStructure(const platform::OpenedItem& item,
                                         platform::DecoderClient& decoder,
                                         const std::optional<ContentType>& imageType);

/// Opens the PDF, loads every page and checks every object and stream (poppler and qpdf,
/// in the decoder). Errors are damage; warnings that both got past leave it intact, with
/// their count said in the detail.
StructureCheckResult checkPdfStructure(const platform::OpenedItem& item,
                                       platform::DecoderClient& decoder);

/// Runs `unzipTool -tqq` (extracting nothing) on the opened item, handed to it as an
/// inherited descriptor, and reads its exit status as unzip documents it: 0 intact, 1
/// intact with warnings, 5, 81 and 82 (and any output about passwords) encrypted or
/// unsupported, 2, 3, 9, 51 and other failures damage; a tool that cannot be started or
/// runs out of memory gives "Could not test".
StructureCheckResult testZipIntegrity(const platform::OpenedItem& item,
                                      const std::filesystem::path& unzipTool = "/usr/bin/unzip");

/// Decompresses the whole gzip, bzip2, xz or zstd stream in the decoder, bounded in time
/// and memory, and says whether every byte and checksum was sound.
StructureCheckResult testCompressedStream(const platform::OpenedItem& item,
                                          platform::decoder::CompressedFormat format,
                                          platform::DecoderClient& decoder);

/// Demuxes every packet of an audio or video file in the decoder (decoding nothing) and
/// reports read errors and checksum failures.
StructureCheckResult checkMediaStructure(const platform::OpenedItem& item,
                                         platform::DecoderClient& decoder);

/// True only when the first byte and the last byte of the item as opened can both be read;
/// false for an empty or unreadable item.
bool basicReadTest(const platform::OpenedItem& item);

}  // namespace lumenscribe
