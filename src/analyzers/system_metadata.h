// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "core/accumulators.h"
#include "core/metadata_value.h"
#include "platform/extended_attributes.h"
#include "platform/opened_item.h"

namespace lumenscribe {

/// What the system records of an item, by the names of the index attributes they stand for
/// ("kMDItemKind", "kMDItemWhereFroms", ...).
using SystemAttributes = std::map<std::string, MetadataValue, std::less<>>;

/// The extended attributes the system metadata is read from.
std::span<const std::string_view> systemMetadataAttributeNames();

/// The attributes Linux records of the item: its kind, content type and type family from
/// the MIME database, its name and owner from the file system, and from its extended
/// attributes (`attributes`, read from it) the download source and date, title, authors and
/// creator. Attribute values that are not UTF-8 have their bad bytes replaced; Mac binary
/// property lists are decoded.
SystemAttributes systemAttributes(const platform::OpenedItem& item,
                                  const platform::ExtendedAttributes& attributes);

/// The text of one attribute value: dates in the medium style, arrays joined by ", ",
/// durations as "m:ss", bitrates as "{n} kbps", anything else as metadataValueText says.
std::string spotlightValueText(const MetadataValue& value, std::string_view attribute);

/// Adds "System Metadata" (one row per attribute of the table, in its order) and "File
/// Origin" ("Where From", "Downloaded"), each with its summary item, and the neutral finding
/// that the download source is recorded.
void addSystemMetadata(const SystemAttributes& attributes, Accumulators& accumulators);

/// The whole analysis of an item, file or folder: its extended attributes read through its
/// descriptor, then the two sections.
void analyzeSystemMetadata(const platform::OpenedItem& item, Accumulators& accumulators);

}  // namespace lumenscribe
