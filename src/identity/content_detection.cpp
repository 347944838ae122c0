// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/content_detection.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "platform/file_descriptor.h"
#include "platform/mime_database.h"

namespace lumenscribe {

namespace {

using namespace std::string_view_literals;

std::string_view asText(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::uint32_t littleEndian(std::string_view bytes, std::size_t at, std::size_t width) {
  std::uint32_t value = 0;
  for (std::size_t i = width; i-- > 0;) {
    value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
  }
  return value;
}

// A category of the MIME database's family tree, tried in this order on a type and its
// ancestors: a compressed tar is a compressed stream first, a script a program (or text).
struct CategoryRule {
  bool (*belongs)(const ContentType&);
  std::string_view category;
};

constexpr std::array kCategoryRules = {
    CategoryRule{[](const ContentType& t) { return t.conformsTo(AbstractType::pdf); }, "pdf"},
    CategoryRule{isProgramType, "executable"},
    CategoryRule{isCompressedStreamType, "compressed"},
    CategoryRule{[](const ContentType& t) { return t.conformsTo(AbstractType::archive); },
                 "archive"},
    CategoryRule{[](const ContentType& t) { return t.conformsTo(AbstractType::image); }, "image"},
    CategoryRule{[](const ContentType& t) { return t.conformsTo(AbstractType::audio); }, "audio"},
    CategoryRule{[](const ContentType& t) { return t.conformsTo(AbstractType::movie); }, "video"},
    CategoryRule{[](const ContentType& t) { return t.conformsTo(AbstractType::text); }, "text"},
};

std::string categoryOf(const ContentType& type, bool executable) {
  for (const CategoryRule& rule : kCategoryRules) {
    if (!rule.belongs(type)) continue;
    const bool writtenAsText = type.conformsTo(AbstractType::text);
    // The database files scripts as programs; a script is one only when it may be run.
    if (rule.category == "executable" && writtenAsText && !executable) return "text";
    // A playlist is text that the database files under audio or video.
    if ((rule.category == "audio" || rule.category == "video") && writtenAsText) return "text";
    return std::string(rule.category);
  }
  return "other";
}

// Categories whose magic rules are specific enough to overrule "these bytes are printable":
// an XPM is an image and an uncompressed PDF a PDF, but a printable file that some rule
// takes for an old font format is still text.
bool overrulesPrintableText(std::string_view category) {
  return category != "other" && category != "text";
}

bool endsLikePdf(std::span<const std::byte> tail) {
  const std::string_view text = asText(tail);
  return text.substr(text.size() - std::min<std::size_t>(text.size(), 1024)).find("%%EOF") !=
         std::string_view::npos;
}

std::optional<ContentSignature> fromMimeMagic(const ContentBytes& bytes, bool printable) {
  const auto type = platform::contentTypeForData(bytes.head);
  if (!type || type->identifier() == "text/plain") return std::nullopt;
  std::string category = categoryOf(*type, bytes.executable);
  if (printable && !overrulesPrintableText(category)) {
    // A more precise kind of text (a script, XML, a web page) is still text.
    if (category != "text") return std::nullopt;
  }
  // Readers take "%PDF-" anywhere in the first 1024 bytes, and so does the database; a text
  // that merely quotes the header must also end the way a PDF does.
  if (category == "pdf" && !asText(bytes.head).starts_with("%PDF-")) {
    const auto tail = bytes.tail ? bytes.tail() : std::nullopt;
    if (!tail || !endsLikePdf(*tail)) return std::nullopt;
  }
  return ContentSignature{type->describe(), std::move(category), type->identifier()};
}

}  // namespace

bool endsWithZipDirectory(std::span<const std::byte> bytes, std::int64_t fileSize) {
  constexpr std::size_t kRecordSize = 22;
  const std::string_view tail = asText(bytes);
  if (tail.size() < kRecordSize || fileSize < static_cast<std::int64_t>(tail.size())) return false;
  // The tail ends where the file ends; positions below are offsets in the file.
  const auto tailStart = static_cast<std::uint64_t>(fileSize) - tail.size();
  for (std::size_t at = tail.size() - kRecordSize + 1; at-- > 0;) {
    if (tail.substr(at, 4) != "PK\x05\x06"sv) continue;
    const std::uint64_t commentLength = littleEndian(tail, at + 20, 2);
    if (at + kRecordSize + commentLength != tail.size()) continue;
    const std::uint64_t directorySize = littleEndian(tail, at + 12, 4);
    const std::uint64_t directoryOffset = littleEndian(tail, at + 16, 4);
    const std::uint64_t recordOffset = tailStart + at;
    // ZIP64 keeps the real numbers elsewhere; its locator sits right before this record.
    if (directoryOffset == 0xFFFFFFFF || directorySize == 0xFFFFFFFF) {
      return at >= 20 && tail.substr(at - 20, 4) == "PK\x06\x07"sv;
    }
    if (directorySize > recordOffset || directoryOffset > recordOffset - directorySize) continue;
    // The directory ends right before this record, wherever the archive itself starts.
    const std::uint64_t directoryStart = recordOffset - directorySize;
    if (directorySize == 0) return littleEndian(tail, at + 10, 2) == 0;
    if (directoryStart >= tailStart) {
      return tail.substr(directoryStart - tailStart, 4) == "PK\x01\x02"sv;
    }
    return true;
  }
  return false;
}

std::optional<ContentSignature> detectContent(const ContentBytes& bytes) {
  if (bytes.head.empty()) return std::nullopt;
  std::optional<ContentSignature> signature = contentSignatureOf(bytes.head);
  const bool printable = signature && signature->typeName == "Plain text";
  if (signature && !printable) return signature;

  if (auto magic = fromMimeMagic(bytes, printable)) return magic;
  // Bytes before a ZIP (a self-extracting stub, a prepended header) hide its start; its
  // end still says what it is.
  if (bytes.tail && bytes.size > 0) {
    if (const auto tail = bytes.tail(); tail && endsWithZipDirectory(*tail, bytes.size)) {
      return ContentSignature{"ZIP archive", "archive", "application/zip"};
    }
  }
  return signature;
}

std::optional<ContentSignature> detectContentSignature(const platform::OpenedItem& item) {
  if (!item.isReadable() || item.size() <= 0 || item.head().empty()) return std::nullopt;
  struct stat status {};
  const bool executable =
      ::fstat(item.descriptor(), &status) == 0 && (status.st_mode & (S_IXUSR | S_IXGRP | S_IXOTH));

  // Read at most once, and only when detection asks for it.
  std::optional<std::vector<std::byte>> tail;
  bool tailRead = false;
  const auto readTail = [&]() -> std::optional<std::span<const std::byte>> {
    if (static_cast<std::uint64_t>(item.size()) == item.head().size()) return item.head();
    if (!tailRead) {
      tailRead = true;
      std::vector<std::byte> bytes(
          static_cast<std::size_t>(std::min<std::int64_t>(item.size(), kTailSize)));
      const auto done = platform::readFullyAt(
          item.descriptor(), bytes, item.size() - static_cast<std::int64_t>(bytes.size()));
      if (done && *done == bytes.size()) tail = std::move(bytes);
    }
    if (!tail) return std::nullopt;
    return std::span<const std::byte>(*tail);
  };
  return detectContent({item.head(), item.size(), executable, readTail});
}

}  // namespace lumenscribe
