// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// Feeds random `unzip -l` output to the listing reader as the ZIP inventory does: in pieces
// (a pipe may cut the output anywhere; the first byte picks the piece size), then publishes
// the summary. The same bytes read in one piece must count the same.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "analyzers/container_summary.h"
#include "analyzers/zip_listing.h"
#include "core/accumulators.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t piece = static_cast<std::size_t>(data[0]) + 1;
  const std::string_view listing(reinterpret_cast<const char*>(data + 1), size - 1);

  lumenscribe::ZipListingReader pieces;
  for (std::size_t at = 0; at < listing.size(); at += piece) {
    pieces.feed(listing.substr(at, piece));
  }
  pieces.finish();
  lumenscribe::ZipListingReader whole;
  whole.feed(listing);
  whole.finish();
  if (pieces.summary() != whole.summary() || pieces.isValidUtf8() != whole.isValidUtf8() ||
      pieces.listedMoreThanArchiveLine() != whole.listedMoreThanArchiveLine()) {
    __builtin_trap();
  }
  if (pieces.isValidUtf8()) {
    lumenscribe::Accumulators accumulators;
    lumenscribe::publishContainerSummary(pieces.summary(), "ZIP Archive", accumulators);
  }
  return 0;
}
