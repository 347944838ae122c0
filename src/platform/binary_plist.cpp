// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/binary_plist.h"

#include <plist/plist.h>

#include <chrono>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>

#include "core/path_text.h"

namespace lumenscribe::platform {

namespace {

constexpr int kMaxDepth = 8;
constexpr std::size_t kMaxNodes = 4096;
// Property-list dates count from the start of 2001, UTC.
constexpr std::chrono::seconds kReferenceDate{978307200};

struct PlistFree {
  void operator()(plist_t node) const noexcept { plist_free(node); }
};

std::string countText(std::uint64_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

class Converter {
 public:
  std::optional<MetadataValue> value(plist_t node, int depth) {
    if (node == nullptr || depth > kMaxDepth || nodesLeft_ == 0) return std::nullopt;
    --nodesLeft_;
    switch (plist_get_node_type(node)) {
      case PLIST_STRING: {
        std::uint64_t length = 0;
        const char* text = plist_get_string_ptr(node, &length);
        if (text == nullptr) return std::nullopt;
        return MetadataValue(validUtf8(std::string_view(text, length)));
      }
      case PLIST_BOOLEAN: {
        std::uint8_t flag = 0;
        plist_get_bool_val(node, &flag);
        return MetadataValue(std::int64_t{flag != 0});
      }
      case PLIST_UINT: {
        // Negative integers come as their 64-bit two's complement.
        std::uint64_t number = 0;
        plist_get_uint_val(node, &number);
        return MetadataValue(static_cast<std::int64_t>(number));
      }
      case PLIST_REAL: {
        double number = 0;
        plist_get_real_val(node, &number);
        return MetadataValue(number);
      }
      case PLIST_DATE: {
        std::int32_t seconds = 0;
        std::int32_t microseconds = 0;
        plist_get_date_val(node, &seconds, &microseconds);
        return MetadataValue(Timestamp(std::chrono::duration_cast<Timestamp::duration>(
            kReferenceDate + std::chrono::seconds(seconds) +
            std::chrono::microseconds(microseconds))));
      }
      case PLIST_DATA: {
        std::uint64_t length = 0;
        plist_get_data_ptr(node, &length);
        return MetadataValue(MetadataValue::Other{countText(length, "byte", "bytes")});
      }
      case PLIST_ARRAY: return array(node, depth);
      // libplist 2.2 aborts the process when asked for a key that holds a NUL byte, and no
      // call reads one safely: a dictionary says how many entries it has, and no more.
      case PLIST_DICT:
        return MetadataValue(
            MetadataValue::Other{countText(plist_dict_get_size(node), "entry", "entries")});
      default: return MetadataValue(MetadataValue::Other{"?"});  // UIDs and keys
    }
  }

 private:
  std::optional<MetadataValue> array(plist_t node, int depth) {
    const std::uint32_t size = plist_array_get_size(node);
    if (size > nodesLeft_) return std::nullopt;
    MetadataValue::Array elements;
    elements.reserve(size);
    for (std::uint32_t i = 0; i < size; ++i) {
      auto element = value(plist_array_get_item(node, i), depth + 1);
      if (!element) return std::nullopt;
      elements.push_back(std::move(*element));
    }
    return MetadataValue(std::move(elements));
  }

  std::size_t nodesLeft_ = kMaxNodes;
};

}  // namespace

std::optional<MetadataValue> parseBinaryPlist(std::string_view bytes) {
  constexpr std::string_view kMagic = "bplist00";
  if (!bytes.starts_with(kMagic) || bytes.size() > std::numeric_limits<std::uint32_t>::max()) {
    return std::nullopt;
  }
  plist_t parsed = nullptr;
  plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &parsed);
  const std::unique_ptr<void, PlistFree> root(parsed);
  if (!root) return std::nullopt;
  return Converter().value(root.get(), 1);
}

}  // namespace lumenscribe::platform
