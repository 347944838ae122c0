// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/content_signature.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/file_descriptor.h"

namespace lumenscribe {

namespace {

constexpr std::size_t kHeadSize = 512;

struct MagicTest {
  std::string_view magic;  // bytes that must open the file
  std::string_view typeName;
  std::string_view category;
};

using namespace std::string_view_literals;

// Tried in this order; the first match decides, so a ZIP-packaged office document is a
// ZIP archive. RIFF and ISO media come after these and before "ID3".
constexpr std::array kLeadingMagic = {
    MagicTest{"\x89PNG\r\n\x1a\n"sv, "PNG image", "image"},
    MagicTest{"\xFF\xD8\xFF"sv, "JPEG image", "image"},
    MagicTest{"%PDF-"sv, "PDF document", "pdf"},
    MagicTest{"PK\x03\x04"sv, "ZIP archive", "archive"},
    MagicTest{"PK\x05\x06"sv, "ZIP archive", "archive"},
    MagicTest{"PK\x07\x08"sv, "ZIP archive", "archive"},
    MagicTest{"GIF87a"sv, "GIF image", "image"},
    MagicTest{"GIF89a"sv, "GIF image", "image"},
    MagicTest{"II*\0"sv, "TIFF image", "image"},
    MagicTest{"MM\0*"sv, "TIFF image", "image"},
};

struct FourCcTest {
  std::string_view code;
  std::string_view typeName;
  std::string_view category;
};

constexpr std::array kRiffForms = {
    FourCcTest{"WAVE", "WAV audio", "audio"},
    FourCcTest{"AVI ", "AVI video", "video"},
    FourCcTest{"WEBP", "WebP image", "image"},
};

constexpr std::array kIsoMediaBrands = {
    FourCcTest{"M4A ", "M4A / MPEG-4 audio", "audio"},
    FourCcTest{"M4B ", "M4A / MPEG-4 audio", "audio"},
    FourCcTest{"M4P ", "M4A / MPEG-4 audio", "audio"},
    FourCcTest{"M4V ", "M4V / MPEG-4 video", "video"},
};

std::string_view asText(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

ContentSignature signature(std::string_view typeName, std::string_view category) {
  return {std::string(typeName), std::string(category)};
}

// A four-character code compared byte for byte: a byte above 0x7F can never equal the
// ASCII codes tested, which is what decoding the slice as ASCII would give too.
std::optional<ContentSignature> riffOrIsoMedia(std::string_view head) {
  const std::string_view form = head.substr(8, 4);
  if (head.substr(0, 4) == "RIFF") {
    for (const auto& test : kRiffForms) {
      if (form == test.code) return signature(test.typeName, test.category);
    }
  }
  if (head.substr(4, 4) != "ftyp") return std::nullopt;
  for (const auto& test : kIsoMediaBrands) {
    if (form == test.code) return signature(test.typeName, test.category);
  }
  // Every other brand, the QuickTime one included, even for a file holding only audio.
  return signature("MP4 / QuickTime media", "video");
}

bool looksLikePlainText(std::string_view head) {
  const auto printable = std::count_if(head.begin(), head.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte == 0x09 || byte == 0x0A || byte == 0x0D || (byte >= 0x20 && byte <= 0x7E);
  });
  return static_cast<double>(printable) / static_cast<double>(head.size()) > 0.95;
}

}  // namespace

std::optional<ContentSignature> contentSignatureOf(std::span<const std::byte> bytes) {
  const std::string_view head = asText(bytes.first(std::min(bytes.size(), kHeadSize)));
  if (head.empty()) return std::nullopt;

  for (const auto& test : kLeadingMagic) {
    if (head.starts_with(test.magic)) return signature(test.typeName, test.category);
  }
  // Too short for a RIFF form or an ISO brand: even a "RIFF" head goes on to the rest.
  if (head.size() >= 12) {
    if (auto media = riffOrIsoMedia(head)) return media;
  }
  if (head.starts_with("ID3")) return signature("MP3 audio", "audio");
  if (looksLikePlainText(head)) return signature("Plain text", "text");
  return std::nullopt;
}

std::optional<ContentSignature> detectContentSignature(const std::filesystem::path& url) {
  const platform::UniqueFd fd = platform::openForReading(url);
  if (!fd) return std::nullopt;
  std::array<std::byte, kHeadSize> head{};
  const auto count = platform::readFully(fd.get(), head);
  if (!count || *count == 0) return std::nullopt;
  return contentSignatureOf(std::span(head).first(*count));
}

bool contentTypeMatchesCategory(const ContentType& type, std::string_view category) {
  if (category == "image") return type.conformsTo(AbstractType::image);
  if (category == "pdf") return type.conformsTo(AbstractType::pdf);
  if (category == "archive") return type.conformsTo(AbstractType::archive);
  if (category == "audio") return type.conformsTo(AbstractType::audio);
  if (category == "video") {
    return type.conformsTo(AbstractType::movie) || type.conformsTo(AbstractType::video) ||
           type.conformsTo(AbstractType::audiovisualContent);
  }
  if (category == "text") return type.conformsTo(AbstractType::text);
  return false;
}

}  // namespace lumenscribe
