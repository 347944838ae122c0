// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/picture_preview.h"

#include <cstring>

#include "decoder/image_status.h"

namespace lumenscribe::decoder {

namespace {

using platform::decoder::RgbaImage;

struct GFree {
  void operator()(void* memory) const noexcept { g_free(memory); }
};

// Replaces `image` with the output of one libvips operation; false (and `image` kept) when
// the operation fails.
template <class Operation>
bool apply(ImagePtr& image, Operation operation) {
  VipsImage* out = nullptr;
  if (operation(image.get(), &out) != 0 || out == nullptr) return false;
  image.reset(out);
  return true;
}

// Any colour space, depth and band count to 8-bit sRGB plus alpha.
bool toRgba8(ImagePtr& image) {
  if (!apply(image, [](VipsImage* in, VipsImage** out) {
        return vips_colourspace(in, out, VIPS_INTERPRETATION_sRGB, nullptr);
      })) {
    return false;
  }
  if (vips_image_get_bands(image.get()) > 4 && !apply(image, [](VipsImage* in, VipsImage** out) {
        return vips_extract_band(in, out, 0, "n", 4, nullptr);
      })) {
    return false;
  }
  if (vips_image_get_bands(image.get()) == 3 && !apply(image, [](VipsImage* in, VipsImage** out) {
        return vips_bandjoin_const1(in, out, 255.0, nullptr);
      })) {
    return false;
  }
  return vips_image_get_bands(image.get()) == 4 && apply(image, [](VipsImage* in, VipsImage** out) {
           return vips_cast_uchar(in, out, nullptr);
         });
}

}  // namespace

std::optional<RgbaImage> renderPicturePreview(const ItemBytes& item,
                                              const platform::decoder::PreviewBox& box) {
  if (!initialiseVips()) return std::nullopt;
  const SourcePtr source = vipsSourceFor(item);
  // Only loaders we allow: the thumbnail's own search would try blocked ones too.
  if (!source || unblockedLoaderFor(source.get()) == nullptr) {
    vips_error_clear();
    return std::nullopt;
  }
  VipsImage* thumbnail = nullptr;
  if (vips_thumbnail_source(source.get(), &thumbnail, box.maxWidth, "height", box.maxHeight, "size",
                            VIPS_SIZE_DOWN, nullptr) != 0) {
    vips_error_clear();
    return std::nullopt;
  }
  ImagePtr image(thumbnail);
  if (!toRgba8(image)) {
    vips_error_clear();
    return std::nullopt;
  }
  const int width = vips_image_get_width(image.get());
  const int height = vips_image_get_height(image.get());
  if (width < 1 || height < 1 || width > box.maxWidth || height > box.maxHeight) {
    return std::nullopt;
  }
  std::size_t size = 0;
  const std::unique_ptr<void, GFree> memory(vips_image_write_to_memory(image.get(), &size));
  const std::size_t expected = static_cast<std::size_t>(width) * height * 4;
  if (!memory || size != expected) {
    vips_error_clear();
    return std::nullopt;
  }
  RgbaImage out;
  out.width = width;
  out.height = height;
  out.pixels.resize(expected);
  std::memcpy(out.pixels.data(), memory.get(), expected);
  return out;
}

}  // namespace lumenscribe::decoder
