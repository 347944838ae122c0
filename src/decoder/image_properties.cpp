// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/image_properties.h"

#include <lcms2.h>

#include <cmath>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "decoder/exif_properties.h"
#include "decoder/image_status.h"

namespace lumenscribe::decoder {

namespace {

using Map = MetadataValue::Map;
using platform::decoder::kMaxPropertyNodes;

// Kept back from the dictionaries for the top-level facts and the dictionaries' own nodes.
constexpr std::size_t kTopLevelNodes = 64;
constexpr double kMillimetresPerInch = 25.4;

struct ProfileClose {
  void operator()(void* profile) const noexcept { cmsCloseProfile(profile); }
};

struct StringsFree {
  void operator()(gchar** strings) const noexcept { g_strfreev(strings); }
};

bool hasField(VipsImage* image, const char* name) {
  return vips_image_get_typeof(image, name) != 0;
}

std::span<const std::byte> blobField(VipsImage* image, const char* name) {
  const void* data = nullptr;
  std::size_t length = 0;
  if (!hasField(image, name) || vips_image_get_blob(image, name, &data, &length) != 0 ||
      data == nullptr) {
    return {};
  }
  return {static_cast<const std::byte*>(data), length};
}

// The bits of one sample as the file stores them: what the loader says when it says
// (16-bit HEIF, 1-bit PNG), else the width of the band format it decodes to.
std::int64_t bitDepth(VipsImage* image) {
  int bits = 0;
  for (const char* name : {"bits-per-sample", "heif-bitdepth"}) {
    if (hasField(image, name) && vips_image_get_int(image, name, &bits) == 0 && bits > 0) {
      return bits;
    }
  }
  return static_cast<std::int64_t>(vips_format_sizeof(vips_image_get_format(image))) * 8;
}

std::optional<std::string> colorModel(VipsImage* image) {
  switch (vips_image_get_interpretation(image)) {
    case VIPS_INTERPRETATION_sRGB:
    case VIPS_INTERPRETATION_RGB:
    case VIPS_INTERPRETATION_RGB16:
    case VIPS_INTERPRETATION_scRGB:
    case VIPS_INTERPRETATION_HSV: return "RGB";
    case VIPS_INTERPRETATION_B_W:
    case VIPS_INTERPRETATION_GREY16: return "Gray";
    case VIPS_INTERPRETATION_CMYK: return "CMYK";
    case VIPS_INTERPRETATION_LAB:
    case VIPS_INTERPRETATION_LABQ:
    case VIPS_INTERPRETATION_LABS:
    case VIPS_INTERPRETATION_LCH:
    case VIPS_INTERPRETATION_CMC: return "Lab";
    default: return std::nullopt;
  }
}

// The profile's own description ("Display P3"), through lcms2.
std::string profileDescription(std::span<const std::byte> profile) {
  if (profile.empty() || profile.size() > UINT32_MAX) return {};
  const std::unique_ptr<void, ProfileClose> handle(
      cmsOpenProfileFromMem(profile.data(), static_cast<cmsUInt32Number>(profile.size())));
  if (!handle) return {};
  const cmsUInt32Number bytes =
      cmsGetProfileInfo(handle.get(), cmsInfoDescription, "en", "US", nullptr, 0);
  if (bytes == 0 || bytes > 1024 * 1024) return {};
  std::vector<wchar_t> wide(bytes / sizeof(wchar_t) + 1, L'\0');
  cmsGetProfileInfo(handle.get(), cmsInfoDescription, "en", "US", wide.data(), bytes);
  std::string text;
  for (const wchar_t c : wide) {
    if (c == L'\0') break;
    appendCodePoint(text, static_cast<std::uint32_t>(c));
  }
  return propertyText(text);
}

std::optional<double> positive(const Map& map, const char* key) {
  const auto found = map.find(key);
  if (found == map.end()) return std::nullopt;
  double number = 0;
  if (const auto* real = found->second.get<double>())
    number = *real;
  else if (const auto* integer = found->second.get<std::int64_t>())
    number = *integer;
  else
    return std::nullopt;
  if (!std::isfinite(number) || number <= 0) return std::nullopt;
  return number;
}

// The resolution the file declares: IFD0's when it has one in inches or centimetres, else
// what the loader read (JFIF density, PNG pHYs). libvips' 1 pixel per millimetre without a
// unit is its default, not something the file said.
void addResolution(Map& properties, VipsImage* header, const Exiv2Reading& exiv2) {
  if (const auto tiff = exiv2.dictionaries.find("{TIFF}"); tiff != exiv2.dictionaries.end()) {
    const auto x = positive(tiff->second, "XResolution");
    const auto y = positive(tiff->second, "YResolution");
    const auto unit = tiff->second.find("ResolutionUnit");
    const std::int64_t* code =
        unit != tiff->second.end() ? unit->second.get<std::int64_t>() : nullptr;
    const double perInch = code == nullptr || *code == 2 ? 1 : *code == 3 ? 2.54 : 0;
    if (x && y && perInch > 0) {
      properties.insert_or_assign("DPIWidth", *x * perInch);
      properties.insert_or_assign("DPIHeight", *y * perInch);
      return;
    }
  }
  if (header == nullptr) return;
  const double x = vips_image_get_xres(header);
  const double y = vips_image_get_yres(header);
  const bool declared = hasField(header, VIPS_META_RESOLUTION_UNIT) || x != 1.0 || y != 1.0;
  if (!declared || !std::isfinite(x) || !std::isfinite(y) || x <= 0 || y <= 0) return;
  properties.insert_or_assign("DPIWidth", x * kMillimetresPerInch);
  properties.insert_or_assign("DPIHeight", y * kMillimetresPerInch);
}

// PNG text chunks ("png-comment-3-Title") by keyword; the EXIF and XMP that ImageMagick and
// Adobe hide in text chunks are Exiv2's to read.
Map pngText(VipsImage* header, PropertyBudget& budget) {
  Map text;
  const std::unique_ptr<gchar*, StringsFree> fields(vips_image_get_fields(header));
  for (gchar** field = fields.get(); field != nullptr && *field != nullptr; ++field) {
    std::string_view name = *field;
    if (!name.starts_with("png-comment-")) continue;
    name.remove_prefix(12);
    const std::size_t dash = name.find('-');
    if (dash == std::string_view::npos) continue;
    const std::string keyword = propertyText(name.substr(dash + 1));
    if (keyword.empty() || keyword.starts_with("Raw profile type") ||
        keyword == "XML:com.adobe.xmp") {
      continue;
    }
    const char* value = nullptr;
    if (vips_image_get_string(header, *field, &value) != 0 || value == nullptr) continue;
    if (keyword.size() <= platform::decoder::kMaxPropertyKey && budget.take(1)) {
      text.insert_or_assign(keyword, propertyText(value));
    }
  }
  return text;
}

// How an animated GIF or WebP plays: its loop count and the delay of frame 0, in seconds.
void addAnimation(Map& properties, VipsImage* header) {
  const char* loader = nullptr;
  if (!hasField(header, VIPS_META_LOADER) ||
      vips_image_get_string(header, VIPS_META_LOADER, &loader) != 0 || loader == nullptr) {
    return;
  }
  const std::string_view name = loader;
  const bool gif = name.starts_with("gifload");
  if (!gif && !name.starts_with("webpload")) return;
  Map timing;
  int loop = 0;
  if (hasField(header, "loop") && vips_image_get_int(header, "loop", &loop) == 0) {
    timing.emplace("LoopCount", loop);
  }
  int* delays = nullptr;
  int count = 0;
  if (hasField(header, "delay") &&
      vips_image_get_array_int(header, "delay", &delays, &count) == 0 && count > 0) {
    timing.emplace("DelayTime", delays[0] / 1000.0);
  }
  if (!timing.empty()) {
    properties.emplace(gif ? "{GIF}" : "{WebP}", std::move(timing));
  }
}

}  // namespace

std::optional<ImageProperties> readImageProperties(const ItemBytes& item) {
  if (item.fd < 0 || item.size <= 0) return std::nullopt;
  PropertyBudget budget(kMaxPropertyNodes - kTopLevelNodes);
  auto opened = openSequentially(item);
  const ImagePtr header = opened ? std::move(opened->image) : nullptr;
  const auto mapped = MappedItem::map(item);
  Exiv2Reading exiv2 = mapped ? readWithExiv2(mapped->bytes(), budget) : Exiv2Reading{};
  if (!header && !exiv2.isImage) return std::nullopt;
  // Exiv2 misses the EXIF of some HEIF files that libvips finds.
  if (header && !exiv2.hasExif()) {
    addExifBlock(blobField(header.get(), VIPS_META_EXIF_NAME), exiv2, budget);
  }

  ImageProperties image;
  Map& properties = image.properties;
  image.imageCount = header ? std::max(1, vips_image_get_n_pages(header.get())) : 1;
  if (header) {
    properties.emplace("PixelWidth", vips_image_get_width(header.get()));
    properties.emplace("PixelHeight", vips_image_get_height(header.get()));
    properties.emplace("Depth", bitDepth(header.get()));
    if (auto model = colorModel(header.get())) properties.emplace("ColorModel", std::move(*model));
  } else if (exiv2.pixelWidth > 0 && exiv2.pixelHeight > 0) {
    properties.emplace("PixelWidth", exiv2.pixelWidth);
    properties.emplace("PixelHeight", exiv2.pixelHeight);
  }

  auto profile =
      header ? blobField(header.get(), VIPS_META_ICC_NAME) : std::span<const std::byte>();
  if (profile.empty()) profile = exiv2.iccProfile;
  if (std::string description = profileDescription(profile); !description.empty()) {
    properties.emplace("ProfileName", std::move(description));
  }

  // EXIF's orientation when the file has one, else the one the loader read (TIFF's own tag).
  const auto tiff = exiv2.dictionaries.find("{TIFF}");
  int loaderOrientation = 0;
  if (tiff != exiv2.dictionaries.end() && tiff->second.contains("Orientation")) {
    properties.emplace("Orientation", tiff->second.at("Orientation"));
  } else if (header && hasField(header.get(), VIPS_META_ORIENTATION) &&
             vips_image_get_int(header.get(), VIPS_META_ORIENTATION, &loaderOrientation) == 0) {
    properties.emplace("Orientation", loaderOrientation);
  }
  addResolution(properties, header.get(), exiv2);

  if (header) {
    if (Map text = pngText(header.get(), budget); !text.empty()) {
      properties.emplace("{PNG}", std::move(text));
    }
    addAnimation(properties, header.get());
  }
  for (auto& [key, dictionary] : exiv2.dictionaries) {
    properties.insert_or_assign(key, std::move(dictionary));
  }
  return image;
}

}  // namespace lumenscribe::decoder
