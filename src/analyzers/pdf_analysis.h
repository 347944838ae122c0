// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include "core/accumulators.h"
#include "platform/decoder_client.h"
#include "platform/opened_item.h"

namespace lumenscribe {

/// The sections "Document" (pages and the info dictionary's properties), "Document
/// Structure" (protection, pages with text, first page size and orientation, text structure)
/// and, when the document's text holds contact data, "PDF Content Analysis" with its counts;
/// the "PDF ..." raw entries, summary items and findings. The document is read by `decoder`
/// in its worker, which never opens a locked document with a password; the contact data is
/// counted here, and only the counts are kept. A file the reader cannot open adds nothing; a
/// decoder that stops on the file adds the raw entry "PDF Analysis Error". Never fails.
void analyzePDF(const platform::OpenedItem& item, platform::DecoderClient& decoder,
                Accumulators& accumulators);

}  // namespace lumenscribe
