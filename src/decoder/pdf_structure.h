// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include "decoder/item_bytes.h"
#include "platform/decoder_protocol.h"

namespace lumenscribe::decoder {

using platform::decoder::PdfStructureFacts;

/// Checks a whole PDF twice over. poppler opens it and loads every page, reading its content
/// as it would to show it, and every error it reports on the way is counted. Unless it is locked,
/// qpdf then does what `qpdf --check` does: reads every object, decodes every stream it can and
/// parses every page's content; what stops it is an error, what it works around a warning. Nothing
/// is written anywhere. A check still running at `deadline` stops there with `complete` false.
PdfStructureFacts checkPdfStructure(const ItemBytes& item,
                                    std::chrono::steady_clock::time_point deadline);

}  // namespace lumenscribe::decoder
