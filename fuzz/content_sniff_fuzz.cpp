// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT

// The type sniffing every inspection runs on a file: the engine's own signature table on its
// first bytes, and the MIME database's answers for the same bytes and for a name's extension.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "fuzz_check.h"
#include "identity/content_signature.h"
#include "platform/mime_database.h"

namespace {

using namespace lumenscribe;

constexpr std::array<std::string_view, 8> kCategories = {
    "image", "pdf", "archive", "audio", "video", "text", "executable", "compressed"};

// The text after the last dot among the input's last 16 bytes, as an extension follows a
// file's stem: the name rides on the tail so that seed files keep their real first bytes.
std::string_view extensionOf(std::string_view input) {
  const std::string_view tail =
      input.substr(input.size() - std::min<std::size_t>(input.size(), 16));
  const auto dot = tail.rfind('.');
  return dot == std::string_view::npos ? std::string_view() : tail.substr(dot + 1);
}

// What type verification relies on for every type the database gives: it conforms to itself
// and to each of its ancestors, looking its name up again gives the same type, and a
// category that an ancestor belongs to takes in the type too.
void checkType(const ContentType& type) {
  FUZZ_CHECK(!type.identifier().empty());
  FUZZ_CHECK(type.conformsTo(type.identifier()));
  FUZZ_CHECK(platform::contentTypeForName(type.identifier()) == type);
  for (const auto& name : type.ancestors()) {
    FUZZ_CHECK(type.conformsTo(name));
    const auto ancestor = platform::contentTypeForName(name);
    if (!ancestor) continue;  // "application/octet-stream" counts as no type
    for (const auto category : kCategories) {
      if (contentTypeMatchesCategory(*ancestor, category)) {
        FUZZ_CHECK(contentTypeMatchesCategory(type, category));
      }
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto bytes = std::as_bytes(std::span(data, size));
  const auto signature = contentSignatureOf(bytes);
  FUZZ_CHECK(size > 0 || !signature);
  // Only the first 512 bytes count.
  FUZZ_CHECK(signature == contentSignatureOf(bytes.first(std::min<std::size_t>(size, 512))));
  if (signature) {
    FUZZ_CHECK(!signature->typeName.empty());
    FUZZ_CHECK(std::find(kCategories.begin(), kCategories.end(), signature->category) !=
               kCategories.end());
  }

  if (const auto sniffed = platform::contentTypeForData(bytes)) checkType(*sniffed);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (const auto named = platform::contentTypeForExtension(extensionOf(text))) checkType(*named);
  return 0;
}
