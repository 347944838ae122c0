// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The decoding of extended attributes into system metadata: the whole input as a Mac's
// binary property list, then cut into one value per attribute the analysis reads (each a
// two-byte length and its bytes) and run through the analysis as an item's attributes.
// Seeds: binary property lists (tests/data/system).
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "analyzers/system_metadata.h"
#include "core/path_text.h"
#include "fuzz_check.h"
#include "platform/binary_plist.h"

namespace {

// Any item will do: its facts are the same for every input.
const lumenscribe::platform::OpenedItem& anyItem() {
  static const auto item = lumenscribe::platform::openItem("/proc/self/exe");
  if (!item) std::abort();
  return *item;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace lumenscribe;
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (const auto value = platform::parseBinaryPlist(bytes)) {
    // Whatever the list holds reads as UTF-8 text.
    const std::string text = spotlightValueText(*value, "kMDItemWhereFroms");
    FUZZ_CHECK(validUtf8(text) == text);
  }

  platform::ExtendedAttributes attributes;
  for (const std::string_view name : systemMetadataAttributeNames()) {
    if (bytes.size() < 2) break;
    const std::size_t length = std::min<std::size_t>(
        static_cast<unsigned char>(bytes[0]) |
            static_cast<std::size_t>(static_cast<unsigned char>(bytes[1])) << 8,
        bytes.size() - 2);
    attributes.emplace(std::string(name), std::string(bytes.substr(2, length)));
    bytes.remove_prefix(2 + length);
  }
  Accumulators accumulators;
  addSystemMetadata(systemAttributes(anyItem(), attributes), accumulators);
  // The item's own facts always make the first section.
  FUZZ_CHECK(!accumulators.sections.empty() && accumulators.sections[0].title == "System Metadata");
  return 0;
}
