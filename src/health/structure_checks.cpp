// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "health/structure_checks.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "health/check_outcomes.h"
#include "platform/file_descriptor.h"

namespace lumenscribe {

namespace {

using platform::decoder::ImageDecodeStatus;
using namespace check;

// The image formats the loaders left unblocked in the decoder decode. An image type outside
// this list that no loader takes (a BMP, an XBM, a camera raw) is one we cannot verify,
// which is not damage; a listed one that no loader takes is.
constexpr std::array<std::string_view, 11> kDecodableImageTypes = {
    "image/jpeg", "image/png",           "image/gif",           "image/webp",
    "image/tiff", "image/heif",          "image/heic",          "image/avif",
    "image/apng", "image/heif-sequence", "image/heic-sequence",
};

bool isUndecodableImageType(const std::optional<ContentType>& type) {
  if (!type || !type->conformsTo(AbstractType::image)) return false;
  return std::none_of(kDecodableImageTypes.begin(), kDecodableImageTypes.end(),
                      [&](std::string_view name) { return type->conformsTo(name); });
}

}  // namespace

StructureCheckResult checkImageStructure(const platform::OpenedItem& item,
                                         platform::DecoderClient& decoder,
                                         const std::optional<ContentType>& imageType) {
  const auto status = decoder.imageStatus(item);
  if (!status) return decoderGaveNoAnswer(status.error(), "image decoder");
  switch (*status) {
    case ImageDecodeStatus::noLoader:
      // A loader we block or lack: nothing can be said about the image either way.
      if (isUndecodableImageType(imageType)) {
        return limited("Unknown type",
                       "The image decoder could not determine a supported image type.");
      }
      return problem("No readable image", "The image decoder found no readable image frames.");
    case ImageDecodeStatus::unsupported:
      return limited("Unknown type",
                     "The image decoder could not determine a supported image type.");
    case ImageDecodeStatus::noImage:
      return problem("No readable image", "The image decoder found no readable image frames.");
    case ImageDecodeStatus::decodeFailed:
      return problem("Decode failed",
                     "The file identifies as an image, but the image decoder could not decode "
                     "its pixel data. The image may be damaged, incomplete, or truncated.");
    case ImageDecodeStatus::complete:
      return {"Complete",
              "The image decoder reports a complete image structure and the pixel data decoded "
              "successfully.",
              false,
              false,
              {}};
    case ImageDecodeStatus::incomplete:
      return problem("Incomplete", "The image decoder reports that the image data is incomplete.");
    case ImageDecodeStatus::headerInvalid:
    case ImageDecodeStatus::invalidData:
      return problem("Invalid data", "The image decoder reports invalid image data.");
    case ImageDecodeStatus::headerTruncated:
      return problem("Unexpected end of file",
                     "The image appears truncated; the image decoder reached the end of the file "
                     "unexpectedly.");
  }
  return problem("Could not open",
                 "The image decoder could not open the image source. The file may be damaged or "
                 "unsupported.");
}

StructureCheckResult checkPdfStructure(const platform::OpenedItem& item,
                                       platform::DecoderClient& decoder) {
  const auto pdf = decoder.pdfStructure(item);
  if (!pdf) return decoderGaveNoAnswer(pdf.error(), "PDF reader");
  if (!pdf->open.opened) {
    return problem(
        "Could not open",
        "The file identifies as a PDF, but the PDF reader could not open its document structure.");
  }
  if (pdf->open.encrypted && pdf->open.locked) {
    return limited("Locked / encrypted",
                   "The PDF is encrypted and locked, so Lumenscribe cannot fully verify its "
                   "internal contents.");
  }
  if (pdf->open.pageCount < 1) {
    return problem("No readable pages",
                   "The file identifies as a PDF, but Lumenscribe could not find a readable page "
                   "structure.");
  }
  const long long errors = static_cast<long long>(pdf->readerErrors) + pdf->checkerErrors;
  if (errors > 0) {
    return problem("Structural errors",
                   "The PDF opens, but checking every page, object and stream found " +
                       counted(errors, "error", "errors") +
                       ". Parts of the document may be damaged or unreadable.");
  }
  if (!pdf->complete) {
    return limited("Partly checked",
                   "The PDF is too large to check in full within Lumenscribe's time limit; the "
                   "part checked showed no problem.");
  }
  const std::string pages = counted(pdf->open.pageCount, "page readable", "pages readable");
  if (pdf->checkerWarnings > 0) {
    return passed(pages, "The structure check noted " +
                             counted(pdf->checkerWarnings, "warning", "warnings") +
                             " about problems that PDF readers work around, such as a damaged "
                             "cross-reference table.");
  }
  return passed(pages);
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

}  // namespace lumenscribe
