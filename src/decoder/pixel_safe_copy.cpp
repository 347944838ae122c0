// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/pixel_safe_copy.h"

#include <climits>
#include <exiv2/exiv2.hpp>
#include <exiv2/webpimage.hpp>
#include <memory>

#include "decoder/exif_properties.h"
#include "decoder/jpeg_segment_filter.h"
#include "decoder/png_chunk_filter.h"

namespace lumenscribe::decoder {

namespace {

bool validOrientation(std::int64_t value) { return value >= 1 && value <= 8; }

// Exiv2's rewrite of a whole file held in memory: the reading views the caller's bytes, the
// writing goes to memory of Exiv2's own, never into them.
std::optional<std::vector<std::byte>> rewriteWithExiv2(std::span<const char> file,
                                                       int expectedType) {
  if (file.empty() || file.size() > static_cast<std::size_t>(LONG_MAX)) return std::nullopt;
  initialiseExiv2();
  const auto* data = reinterpret_cast<const Exiv2::byte*>(file.data());
  const auto size = static_cast<long>(file.size());
  try {
    if (Exiv2::ImageFactory::getType(data, size) != expectedType) return std::nullopt;
    std::unique_ptr<Exiv2::Image> image(Exiv2::ImageFactory::open(data, size).release());
    if (!image) return std::nullopt;
    image->readMetadata();
    std::optional<std::uint16_t> orientation;
    const Exiv2::ExifData& exif = image->exifData();
    const auto found = exif.findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
    if (found != exif.end() && found->count() > 0 && validOrientation(found->toLong())) {
      orientation = static_cast<std::uint16_t>(found->toLong());
    }
    image->clearExifData();
    image->clearIptcData();
    image->clearXmpData();
    image->clearXmpPacket();
    image->writeXmpFromPacket(true);  // the empty packet, not one made from the empty data
    image->clearComment();
    if (orientation) image->exifData()["Exif.Image.Orientation"] = *orientation;
    image->writeMetadata();

    Exiv2::BasicIo& io = image->io();
    if (io.open() != 0) return std::nullopt;
    const long written = io.size();
    if (written <= 0) return std::nullopt;
    std::vector<std::byte> out(static_cast<std::size_t>(written));
    const long read = io.read(reinterpret_cast<Exiv2::byte*>(out.data()), written);
    io.close();
    if (read != written) return std::nullopt;
    return out;
  } catch (...) {
    // Exiv2's errors (a file it cannot parse or write) and running out of memory alike.
    return std::nullopt;
  }
}

}  // namespace

std::optional<std::uint16_t> sourceOrientation(std::span<const char> file) {
  PropertyBudget budget(4096);
  const Exiv2Reading reading = readWithExiv2(file, budget);
  const auto tiff = reading.dictionaries.find("{TIFF}");
  if (tiff == reading.dictionaries.end()) return std::nullopt;
  const auto entry = tiff->second.find("Orientation");
  if (entry == tiff->second.end()) return std::nullopt;
  const std::int64_t* value = entry->second.get<std::int64_t>();
  if (value == nullptr || !validOrientation(*value)) return std::nullopt;
  return static_cast<std::uint16_t>(*value);
}

std::optional<std::vector<std::byte>> pixelSafeCopy(const ItemBytes& item, ImageFormat format) {
  const auto mapped = MappedItem::map(item);
  if (!mapped) return std::nullopt;
  switch (format) {
    case ImageFormat::jpeg: {
      const auto rewritten = rewriteWithExiv2(mapped->bytes(), Exiv2::ImageType::jpeg);
      if (!rewritten) return std::nullopt;
      return filterJpegSegments(*rewritten);
    }
    case ImageFormat::webp: return rewriteWithExiv2(mapped->bytes(), Exiv2::ImageType::webp);
    case ImageFormat::png:
      return filterPngChunks(std::as_bytes(mapped->bytes()), sourceOrientation(mapped->bytes()));
    case ImageFormat::tiff:
    case ImageFormat::gif:
    case ImageFormat::heic:
    case ImageFormat::avif:
    case ImageFormat::other: return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace lumenscribe::decoder
