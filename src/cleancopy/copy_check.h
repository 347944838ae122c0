// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "core/metadata_value.h"

namespace lumenscribe {

/// The camera, location, creator and software properties in an image property map, by
/// their dotted key paths ("{GPS}.Latitude", "{TIFF}.Make", "{XMP}.dc:creator"): everything
/// in the GPS, IPTC, XMP, maker-note and PNG-text dictionaries, and every EXIF and IFD0 entry
/// but those that only describe the pixels (orientation, resolution, colour space, the
/// recorded size, the EXIF version). Empty for a clean picture.
std::vector<std::string> personalProperties(const MetadataValue::Map& properties);

/// "{GPS}.Latitude, {TIFF}.Make and 3 more": the first few keys for a message.
std::string propertyListText(const std::vector<std::string>& keys);

}  // namespace lumenscribe
