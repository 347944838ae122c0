// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lumenscribe::platform {

/// Full Unicode upper case, locale-independent ("Café" -> "CAFÉ", "straße" -> "STRASSE").
std::string upperCased(std::string_view utf8);
/// Full Unicode lower case, locale-independent ("JPG" -> "jpg", "ÀB" -> "àb").
std::string lowerCased(std::string_view utf8);

/// `utf8` without the white space and line breaks (Unicode White_Space: spaces of every
/// width, tabs, line and paragraph separators) at either end.
std::string_view trimmedWhitespace(std::string_view utf8);

/// The number of user-perceived characters (extended grapheme clusters): "é" written as
/// e plus a combining accent is one, an emoji with a skin tone is one.
std::size_t characterCount(std::string_view utf8);

}  // namespace lumenscribe::platform
