// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// analyzeImageProperties over random property maps, built two ways from the bytes: read as
// a decoder reply (what a misbehaving worker could send), and grown from the keys the
// analysis looks for, with values of every kind, so that the rows' code paths are reached.
// Seeds: none needed.
#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "analyzers/image_metadata.h"
#include "platform/decoder_protocol.h"

namespace {

using lumenscribe::MetadataValue;
using Map = MetadataValue::Map;

constexpr std::array kKeys = {
    "PixelWidth",
    "PixelHeight",
    "Depth",
    "ColorModel",
    "ProfileName",
    "Orientation",
    "DPIWidth",
    "DPIHeight",
    "{Exif}",
    "{TIFF}",
    "{GPS}",
    "ExposureTime",
    "FNumber",
    "ISOSpeedRatings",
    "FocalLength",
    "DateTimeOriginal",
    "LensModel",
    "ExposureProgram",
    "ExposureMode",
    "ExposureBiasValue",
    "MeteringMode",
    "WhiteBalance",
    "Flash",
    "FocalLenIn35mmFilm",
    "DigitalZoomRatio",
    "SceneCaptureType",
    "ColorSpace",
    "LensMake",
    "LensSerialNumber",
    "BodySerialNumber",
    "ImageUniqueID",
    "PixelXDimension",
    "PixelYDimension",
    "Make",
    "Model",
    "Software",
    "Artist",
    "Copyright",
    "Latitude",
    "LatitudeRef",
    "Longitude",
    "LongitudeRef",
    "Altitude",
    "DateStamp",
};

MetadataValue valueFrom(FuzzedDataProvider& bytes, int depth);

Map mapFrom(FuzzedDataProvider& bytes, int depth) {
  Map map;
  const int entries = bytes.ConsumeIntegralInRange(0, 12);
  for (int i = 0; i < entries && bytes.remaining_bytes() > 0; ++i) {
    std::string key = bytes.ConsumeBool() ? std::string(bytes.PickValueInArray(kKeys))
                                          : bytes.ConsumeRandomLengthString(16);
    map.insert_or_assign(std::move(key), valueFrom(bytes, depth + 1));
  }
  return map;
}

MetadataValue valueFrom(FuzzedDataProvider& bytes, int depth) {
  switch (bytes.ConsumeIntegralInRange(0, depth < 4 ? 5 : 2)) {
    case 0: return bytes.ConsumeIntegral<std::int64_t>();
    case 1: return bytes.ConsumeFloatingPoint<double>();  // infinities and NaN included
    case 2: return bytes.ConsumeRandomLengthString(24);
    case 3: {
      MetadataValue::Array array;
      const int elements = bytes.ConsumeIntegralInRange(0, 4);
      for (int i = 0; i < elements; ++i) array.push_back(valueFrom(bytes, depth + 1));
      return array;
    }
    default: return mapFrom(bytes, depth);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  if (data[0] % 2 == 0) {
    const auto payload = std::as_bytes(std::span(data + 1, size - 1));
    lumenscribe::platform::decoder::Reader in(payload);
    if (const auto reply = lumenscribe::platform::decoder::readImageProperties(in);
        reply && *reply) {
      (void)lumenscribe::analyzeImageProperties((*reply)->properties);
    }
    return 0;
  }
  FuzzedDataProvider bytes(data + 1, size - 1);
  (void)lumenscribe::analyzeImageProperties(mapFrom(bytes, 1));
  return 0;
}
