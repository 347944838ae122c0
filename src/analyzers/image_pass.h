// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "analyzers/image_metadata.h"
#include "core/accumulators.h"
#include "core/metadata_value.h"
#include "platform/decoder_client.h"
#include "platform/opened_item.h"

namespace lumenscribe {

/// The property map of image 0 of a regular file, read by the decoder whatever the file's
/// name or type; nothing when it holds no image or the decoder gives no answer (the image
/// pass says nothing of its own failures).
std::optional<MetadataValue::Map> readImagePropertyMap(const platform::OpenedItem& item,
                                                       platform::DecoderClient& decoder);

/// Adds the image sections in their fixed order ("Image", "Camera", "Location", "Software &
/// Creator"), each with its summary item and, for location and creator rows, its finding;
/// then merges the raw entries (replacing earlier values of the same keys) and, last, raises
/// the camera finding.
void addImageMetadata(const ImageMetadataGroups& groups, Accumulators& accumulators);

/// The whole image pass over a property map read before: nothing without one.
void addImagePass(const std::optional<MetadataValue::Map>& properties, Accumulators& accumulators);

}  // namespace lumenscribe
