// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "core/content_type.h"

#include <algorithm>
#include <array>

namespace lumenscribe {

namespace {

constexpr std::array<std::string_view, 3> kVideoOutsideVideoTree = {
    "application/vnd.rn-realmedia", "application/x-matroska", "application/mxf"};

// The MIME database's own names; aliases such as application/x-bzip2 never appear in a
// type's ancestry, which lists canonical names only.
constexpr std::array<std::string_view, 20> kArchiveTypes = {
    "application/zip",
    "application/x-tar",
    "application/gzip",
    "application/x-bzip",
    "application/x-bzip-compressed-tar",
    "application/x-bzip2",
    "application/x-xz",
    "application/x-7z-compressed",
    "application/vnd.rar",
    "application/x-rar",
    "application/x-compressed-tar",
    "application/x-bzip2-compressed-tar",
    "application/x-xz-compressed-tar",
    "application/zstd",
    "application/x-zstd-compressed-tar",
    "application/x-apple-diskimage",
    "application/x-xar",
    "application/java-archive",
    "application/x-cpio",
    "application/x-lzma",
};

constexpr std::array<std::string_view, 33> kSourceCodeTypes = {
    "text/x-c",
    "text/x-c++src",
    "text/x-csrc",
    "text/x-chdr",
    "text/x-c++hdr",
    "text/x-python",
    "text/x-python3",
    "application/javascript",
    "text/javascript",
    "text/x-java",
    "text/rust",
    "text/x-rust",
    "text/x-go",
    "text/x-kotlin",
    "text/x-swift",
    "text/x-objcsrc",
    "application/x-php",
    "text/x-php",
    "application/x-ruby",
    "text/x-ruby",
    "application/x-perl",
    "text/x-perl",
    "application/x-shellscript",
    "text/x-shellscript",
    "application/sql",
    "text/x-sql",
    "text/x-csharp",
    "text/x-scala",
    "text/x-haskell",
    "text/x-lua",
    "text/x-pascal",
    "text/x-fortran",
    "text/x-cmake",
};

bool hasPrefix(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

template <class Predicate>
bool anyInTree(const ContentType& type, Predicate predicate) {
  return predicate(std::string_view(type.identifier())) ||
         std::any_of(type.ancestors().begin(), type.ancestors().end(),
                     [&](const std::string& name) { return predicate(std::string_view(name)); });
}

template <std::size_t N>
auto memberOf(const std::array<std::string_view, N>& names) {
  return [&names](std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
  };
}

}  // namespace

ContentType::ContentType(std::string identifier, std::optional<std::string> localizedDescription,
                         std::vector<std::string> ancestors)
    : identifier_(std::move(identifier)),
      description_(std::move(localizedDescription)),
      ancestors_(std::move(ancestors)) {}

bool ContentType::conformsTo(std::string_view identifier) const {
  return anyInTree(*this, [identifier](std::string_view name) { return name == identifier; });
}

bool ContentType::conformsTo(AbstractType type) const {
  switch (type) {
    case AbstractType::data: return !hasPrefix(identifier_, "inode/");
    case AbstractType::image:
      return anyInTree(*this, [](std::string_view name) { return hasPrefix(name, "image/"); });
    case AbstractType::pdf: return conformsTo("application/pdf");
    case AbstractType::audio:
      return anyInTree(*this, [](std::string_view name) { return hasPrefix(name, "audio/"); });
    case AbstractType::movie:
    case AbstractType::video:
    case AbstractType::audiovisualContent:
      return anyInTree(*this, [](std::string_view name) {
        return hasPrefix(name, "video/") || memberOf(kVideoOutsideVideoTree)(name);
      });
    case AbstractType::archive: return anyInTree(*this, memberOf(kArchiveTypes));
    case AbstractType::text: return conformsTo("text/plain");
    case AbstractType::plainText: return identifier_ == "text/plain";
    case AbstractType::sourceCode: return anyInTree(*this, memberOf(kSourceCodeTypes));
  }
  return false;
}

}  // namespace lumenscribe
