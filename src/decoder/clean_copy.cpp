// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/clean_copy.h"

#include <algorithm>
#include <array>
#include <utility>

#include "decoder/image_status.h"
#include "decoder/pixel_safe_copy.h"
#include "decoder/standard_copy.h"

namespace lumenscribe::decoder {

namespace {

using platform::decoder::CleanCopyKind;
using platform::decoder::CleanCopyStatus;

//                                         loader          format
constexpr std::array<std::pair<std::string_view, ImageFormat>, 5> kLoaders = {{
    {"jpegload_source", ImageFormat::jpeg},
    {"pngload_source", ImageFormat::png},
    {"webpload_source", ImageFormat::webp},
    {"tiffload_source", ImageFormat::tiff},
    {"gifload_source", ImageFormat::gif},
}};

// HEIF holds HEVC (HEIC) or AV1 (AVIF) pictures; the loader says which.
ImageFormat heifFormat(VipsImage* header) {
  const char* compression = nullptr;
  if (vips_image_get_typeof(header, "heif-compression") == 0 ||
      vips_image_get_string(header, "heif-compression", &compression) != 0 ||
      compression == nullptr) {
    return ImageFormat::other;
  }
  const std::string_view name = compression;
  if (name == "hevc") return ImageFormat::heic;
  if (name == "av1") return ImageFormat::avif;
  return ImageFormat::other;
}

bool hasEncoder(ImageFormat format) {
  const char* saver = nullptr;
  switch (format) {
    case ImageFormat::jpeg: saver = "jpegsave_target"; break;
    case ImageFormat::png: saver = "pngsave_target"; break;
    case ImageFormat::webp: saver = "webpsave_target"; break;
    case ImageFormat::tiff: saver = "tiffsave_target"; break;
    case ImageFormat::gif: saver = "gifsave_target"; break;
    case ImageFormat::heic:
    case ImageFormat::avif: saver = "heifsave_target"; break;
    case ImageFormat::other: return false;
  }
  return vips_type_find("VipsOperation", saver) != 0;
}

}  // namespace

ImageFormat formatOfLoader(std::string_view loader) {
  for (const auto& [name, format] : kLoaders) {
    if (name == loader) return format;
  }
  return ImageFormat::other;
}

std::optional<CleanCopySource> readCleanCopySource(const ItemBytes& item) {
  if (item.fd < 0 || item.size <= 0) return std::nullopt;
  const auto opened = openSequentially(item);
  if (!opened) return std::nullopt;
  const ImagePtr& header = opened->image;
  CleanCopySource facts;
  const std::string_view name = opened->loader;
  facts.format = name == "heifload_source" ? heifFormat(header.get()) : formatOfLoader(name);
  if (!hasEncoder(facts.format)) facts.format = ImageFormat::other;
  facts.imageCount = std::max(1, vips_image_get_n_pages(header.get()));
  facts.width = vips_image_get_width(header.get());
  facts.height = vips_image_get_height(header.get());
  if (facts.width < 1 || facts.height < 1) return std::nullopt;
  return facts;
}

CleanCopyOutcome writeCleanCopy(const ItemBytes& item, const CleanCopyRequest& request,
                                OutputSink& out) {
  const auto source = readCleanCopySource(item);
  if (!source || source->imageCount != 1) return {CleanCopyStatus::notOneImage, 0};
  if (source->format == ImageFormat::other) return {CleanCopyStatus::unwritable, 0};

  CleanCopyStatus status = CleanCopyStatus::written;
  if (request.kind == CleanCopyKind::pixelSafe) {
    const auto copy = pixelSafeCopy(item, source->format);
    if (!copy) return {CleanCopyStatus::refused, 0};
    if (!out.write(*copy)) status = CleanCopyStatus::encodeFailed;
  } else {
    status = writeStandardCopy(item, source->format, request.quality, out);
  }
  if (!out.flush() && status == CleanCopyStatus::written) status = CleanCopyStatus::encodeFailed;
  return {status, out.bytes()};
}

}  // namespace lumenscribe::decoder
