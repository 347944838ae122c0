// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/standard_copy.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "decoder/image_status.h"

namespace lumenscribe::decoder {

namespace {

// Orientation and colour, resolution, and what the GIF encoder reuses to keep a palette's
// colours exact. Everything else a loader attaches (EXIF, XMP, IPTC, text chunks, comments,
// thumbnails, Photoshop resources, descriptions) is left behind.
constexpr std::array<std::string_view, 7> kKeptFields = {
    VIPS_META_ORIENTATION, VIPS_META_ICC_NAME, VIPS_META_RESOLUTION_UNIT, "gif-palette",
    "background",          "interlaced",       "bits-per-sample",
};

struct StringsFree {
  void operator()(gchar** strings) const noexcept { g_strfreev(strings); }
};

void removeMetadata(VipsImage* image) {
  const std::unique_ptr<gchar*, StringsFree> fields(vips_image_get_fields(image));
  std::vector<std::string> removed;
  for (gchar** field = fields.get(); field != nullptr && *field != nullptr; ++field) {
    if (!isKeptImageField(*field)) removed.emplace_back(*field);
  }
  // The header's own fields (width, bands...) are not metadata: removing them does nothing.
  for (const std::string& name : removed) vips_image_remove(image, name.c_str());
}

struct TargetState {
  OutputSink* out;
};

gint64 onWrite(VipsTargetCustom* /*target*/, const void* data, gint64 length, gpointer user) {
  auto* state = static_cast<TargetState*>(user);
  if (length < 0) return -1;
  const std::span bytes(static_cast<const std::byte*>(data), static_cast<std::size_t>(length));
  return state->out->write(bytes) ? length : -1;
}

const char* saverFor(ImageFormat format) {
  switch (format) {
    case ImageFormat::jpeg: return "jpegsave_target";
    case ImageFormat::png: return "pngsave_target";
    case ImageFormat::webp: return "webpsave_target";
    case ImageFormat::tiff: return "tiffsave_buffer";
    case ImageFormat::gif: return "gifsave_target";
    case ImageFormat::heic:
    case ImageFormat::avif: return "heifsave_target";
    case ImageFormat::other: return nullptr;
  }
  return nullptr;
}

int save(const char* saver, ImageFormat format, VipsImage* image, VipsTarget* target, int quality) {
  switch (format) {
    case ImageFormat::jpeg:
    case ImageFormat::webp:
      return quality > 0 ? vips_call(saver, image, target, "Q", quality, nullptr)
                         : vips_call(saver, image, target, nullptr);
    case ImageFormat::heic:
    case ImageFormat::avif: {
      const auto compression = format == ImageFormat::heic ? VIPS_FOREIGN_HEIF_COMPRESSION_HEVC
                                                           : VIPS_FOREIGN_HEIF_COMPRESSION_AV1;
      return quality > 0 ? vips_call(saver, image, target, "compression", compression, "Q", quality,
                                     nullptr)
                         : vips_call(saver, image, target, "compression", compression, nullptr);
    }
    case ImageFormat::gif: return vips_call(saver, image, target, "reuse", TRUE, nullptr);
    case ImageFormat::png:
    case ImageFormat::tiff:
    case ImageFormat::other: return vips_call(saver, image, target, nullptr);
  }
  return -1;
}

struct GFree {
  void operator()(void* memory) const noexcept { g_free(memory); }
};

// libtiff goes back to patch what it wrote first, which a stream of chunks cannot take: the
// file is made in memory and then sent.
CleanCopyStatus saveTiff(VipsImage* image, OutputSink& out) {
  void* buffer = nullptr;
  std::size_t length = 0;
  const int failed = vips_tiffsave_buffer(image, &buffer, &length, nullptr);
  const std::unique_ptr<void, GFree> owned(buffer);
  if (failed != 0 || buffer == nullptr) {
    vips_error_clear();
    return CleanCopyStatus::encodeFailed;
  }
  return out.write({static_cast<const std::byte*>(buffer), length}) ? CleanCopyStatus::written
                                                                    : CleanCopyStatus::encodeFailed;
}

}  // namespace

bool isKeptImageField(std::string_view name) {
  return std::find(kKeptFields.begin(), kKeptFields.end(), name) != kKeptFields.end();
}

CleanCopyStatus writeStandardCopy(const ItemBytes& item, ImageFormat format, int quality,
                                  OutputSink& out) {
  const char* const saver = saverFor(format);
  if (saver == nullptr || !initialiseVips() || vips_type_find("VipsOperation", saver) == 0) {
    return CleanCopyStatus::unwritable;
  }
  const auto opened = openSequentially(item);
  if (!opened) return CleanCopyStatus::undecodable;
  const ImagePtr& image = opened->image;
  // Decoded whole before anything is encoded, so that a file whose pixels do not decode is
  // told apart from an encoder that fails.
  const ImagePtr decoded(vips_image_copy_memory(image.get()));
  if (!decoded) {
    vips_error_clear();
    return CleanCopyStatus::undecodable;
  }
  removeMetadata(decoded.get());

  if (format == ImageFormat::tiff) return saveTiff(decoded.get(), out);
  // Outlives the target, which may still write what it buffered as it goes.
  TargetState state{&out};
  using TargetPtr = std::unique_ptr<VipsTarget, GObjectUnref>;
  const TargetPtr target(VIPS_TARGET(vips_target_custom_new()));
  if (!target) return CleanCopyStatus::encodeFailed;
  g_signal_connect(target.get(), "write", G_CALLBACK(onWrite), &state);
  if (save(saver, format, decoded.get(), target.get(), quality) != 0) {
    vips_error_clear();
    return CleanCopyStatus::encodeFailed;
  }
  return CleanCopyStatus::written;
}

}  // namespace lumenscribe::decoder
