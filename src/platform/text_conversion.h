// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lumenscribe::platform {

/// `bytes` in the ICU encoding `encoding` ("UTF-16LE", "macintosh"...) as UTF-8, or nothing
/// at the first sequence that is not text in it, a sequence cut short at the end included:
/// nothing is substituted. An encoding ICU does not know gives nothing too. The output
/// grows with what it holds, so a large file costs about the size of its text. May throw
/// std::bad_alloc.
std::optional<std::string> convertToUtf8(std::string_view bytes, const char* encoding);

}  // namespace lumenscribe::platform
