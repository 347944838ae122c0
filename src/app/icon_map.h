// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

namespace lumenscribe::app {

/// One symbol name carried by a result (or used by the window itself) and the Lucide icon
/// that draws it.
struct IconMapping {
  std::string_view symbolName;
  std::string_view lucideName;
};

/// The whole table, in the order it is written.
std::span<const IconMapping> iconMappings();

/// The Lucide icon for a symbol name; unknown names get the generic document icon.
std::string_view lucideNameFor(std::string_view symbolName);

/// The resource path of a Lucide icon (":/lucide/file.svg").
const char* lucideResourcePrefix();

}  // namespace lumenscribe::app
