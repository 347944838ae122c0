// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/pixel_fingerprint.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "decoder/image_status.h"
#include "platform/sha256.h"

namespace lumenscribe::decoder {

namespace {

// Replaces `image` with the output of one libvips operation; false (and `image` kept) when
// the operation fails.
template <class Operation>
bool apply(ImagePtr& image, Operation operation) {
  VipsImage* out = nullptr;
  if (operation(image.get(), &out) != 0 || out == nullptr) {
    if (out != nullptr) g_object_unref(out);
    return false;
  }
  image.reset(out);
  return true;
}

// To sRGB through the image's own profile where it has a usable one, as a colour-managed
// drawing would; by libvips' interpretation otherwise (a CMYK JPEG without a profile gets
// libvips' built-in CMYK profile).
bool toSrgb(ImagePtr& image) {
  if (vips_image_get_typeof(image.get(), VIPS_META_ICC_NAME) != 0 &&
      apply(image, [](VipsImage* in, VipsImage** out) {
        return vips_icc_transform(in, out, "srgb", "embedded", TRUE, "depth", 8, nullptr);
      })) {
    return true;
  }
  vips_error_clear();
  return apply(image, [](VipsImage* in, VipsImage** out) {
    return vips_colourspace(in, out, VIPS_INTERPRETATION_sRGB, nullptr);
  });
}

// 8-bit R, G, B, A whatever the image's depth and band count.
bool toRgba8(ImagePtr& image) {
  if (!toSrgb(image)) return false;
  if (vips_image_get_format(image.get()) != VIPS_FORMAT_UCHAR &&
      !apply(image,
             [](VipsImage* in, VipsImage** out) { return vips_cast_uchar(in, out, nullptr); })) {
    return false;
  }
  const int bands = vips_image_get_bands(image.get());
  if (bands > 4 && !apply(image, [](VipsImage* in, VipsImage** out) {
        return vips_extract_band(in, out, 0, "n", 4, nullptr);
      })) {
    return false;
  }
  if (bands == 3 && !apply(image, [](VipsImage* in, VipsImage** out) {
        return vips_bandjoin_const1(in, out, 255.0, nullptr);
      })) {
    return false;
  }
  return vips_image_get_bands(image.get()) == 4 &&
         vips_image_get_format(image.get()) == VIPS_FORMAT_UCHAR;
}

struct HashState {
  platform::Sha256 sha;
  std::vector<std::uint8_t> row;
  int nextRow = 0;
};

// libvips hands the strips over in order, top to bottom, each the image's full width.
int hashStrip(VipsRegion* region, VipsRect* area, void* data) {
  auto* state = static_cast<HashState*>(data);
  if (area->top != state->nextRow || area->left != 0) return -1;
  const auto rowBytes = static_cast<std::size_t>(area->width) * 4;
  if (rowBytes != state->row.size()) return -1;
  for (int y = area->top; y < area->top + area->height; ++y) {
    std::memcpy(state->row.data(), VIPS_REGION_ADDR(region, area->left, y), rowBytes);
    premultiplyRow(state->row);
    if (!state->sha.update(std::as_bytes(std::span(state->row)))) return -1;
  }
  state->nextRow = area->top + area->height;
  return 0;
}

}  // namespace

void premultiplyRow(std::span<std::uint8_t> rgba) {
  for (std::size_t i = 0; i + 3 < rgba.size(); i += 4) {
    const unsigned alpha = rgba[i + 3];
    if (alpha == 255) continue;
    for (std::size_t c = 0; c < 3; ++c) {
      rgba[i + c] = static_cast<std::uint8_t>((rgba[i + c] * alpha + 127) / 255);
    }
  }
}

std::optional<PixelFingerprint> computePixelFingerprint(const ItemBytes& item) {
  if (item.fd < 0 || item.size <= 0) return std::nullopt;
  auto opened = openSequentially(item);
  if (!opened) return std::nullopt;
  ImagePtr image = std::move(opened->image);
  const int width = vips_image_get_width(image.get());
  const int height = vips_image_get_height(image.get());
  if (width < 1 || height < 1 || !toRgba8(image)) {
    vips_error_clear();
    return std::nullopt;
  }

  HashState state;
  if (!state.sha.valid()) return std::nullopt;
  state.row.resize(static_cast<std::size_t>(width) * 4);
  if (vips_sink_disc(image.get(), hashStrip, &state) != 0 || state.nextRow != height) {
    vips_error_clear();
    return std::nullopt;
  }
  const auto digest = state.sha.finish();
  if (!digest) return std::nullopt;
  PixelFingerprint fingerprint;
  std::copy(digest->begin(), digest->end(), fingerprint.digest.begin());
  fingerprint.width = width;
  fingerprint.height = height;
  return fingerprint;
}

}  // namespace lumenscribe::decoder
