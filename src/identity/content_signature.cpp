// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/content_signature.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace lumenscribe {

namespace {

constexpr std::size_t kHeadSize = 512;

struct MagicTest {
  std::string_view magic;  // bytes that must open the file
  std::string_view typeName;
  std::string_view category;
  std::string_view mimeType;
};

using namespace std::string_view_literals;

// Tried in this order; the first match decides, so a ZIP-packaged office document is a
// ZIP archive. RIFF and ISO media come after these and before "ID3". Mach-O is here because
// the MIME database has no rule for it.
constexpr std::array kLeadingMagic = {
    MagicTest{"\x89PNG\r\n\x1a\n"sv, "PNG image", "image", "image/png"},
    MagicTest{"\xFF\xD8\xFF"sv, "JPEG image", "image", "image/jpeg"},
    MagicTest{"%PDF-"sv, "PDF document", "pdf", "application/pdf"},
    MagicTest{"PK\x03\x04"sv, "ZIP archive", "archive", "application/zip"},
    MagicTest{"PK\x05\x06"sv, "ZIP archive", "archive", "application/zip"},
    MagicTest{"PK\x07\x08"sv, "ZIP archive", "archive", "application/zip"},
    MagicTest{"GIF87a"sv, "GIF image", "image", "image/gif"},
    MagicTest{"GIF89a"sv, "GIF image", "image", "image/gif"},
    MagicTest{"II*\0"sv, "TIFF image", "image", "image/tiff"},
    MagicTest{"MM\0*"sv, "TIFF image", "image", "image/tiff"},
    MagicTest{"\xFE\xED\xFA\xCE"sv, "Mach-O program", "executable", ""},
    MagicTest{"\xFE\xED\xFA\xCF"sv, "Mach-O program", "executable", ""},
    MagicTest{"\xCE\xFA\xED\xFE"sv, "Mach-O program", "executable", ""},
    MagicTest{"\xCF\xFA\xED\xFE"sv, "Mach-O program", "executable", ""},
};

struct FourCcTest {
  std::string_view code;
  std::string_view typeName;
  std::string_view category;
  std::string_view mimeType;
};

constexpr std::array kRiffForms = {
    FourCcTest{"WAVE", "WAV audio", "audio", "audio/x-wav"},
    FourCcTest{"AVI ", "AVI video", "video", "video/x-msvideo"},
    FourCcTest{"WEBP", "WebP image", "image", "image/webp"},
};

// ISO base media brands that name what the file holds. The HEIF brands are still images
// (iPhone photos); the generic structural brands mif1 and msf1 say only "HEIF", so their
// compatible brands tell AVIF from HEVC.
constexpr std::array kIsoMediaBrands = {
    FourCcTest{"M4A ", "M4A / MPEG-4 audio", "audio", "audio/mp4"},
    FourCcTest{"M4B ", "M4A / MPEG-4 audio", "audio", "audio/mp4"},
    FourCcTest{"M4P ", "M4A / MPEG-4 audio", "audio", "audio/mp4"},
    FourCcTest{"M4V ", "M4V / MPEG-4 video", "video", "video/mp4"},
    FourCcTest{"heic", "HEIF image", "image", "image/heif"},
    FourCcTest{"heix", "HEIF image", "image", "image/heif"},
    FourCcTest{"heim", "HEIF image", "image", "image/heif"},
    FourCcTest{"heis", "HEIF image", "image", "image/heif"},
    FourCcTest{"hevc", "HEIF image", "image", "image/heif"},
    FourCcTest{"hevx", "HEIF image", "image", "image/heif"},
    FourCcTest{"hevm", "HEIF image", "image", "image/heif"},
    FourCcTest{"hevs", "HEIF image", "image", "image/heif"},
    FourCcTest{"avif", "AVIF image", "image", "image/avif"},
    FourCcTest{"avis", "AVIF image", "image", "image/avif"},
};
constexpr std::array<std::string_view, 2> kGenericHeifBrands = {"mif1", "msf1"};
// An ftyp box larger than this is not one any encoder writes.
constexpr std::size_t kMaxFtypSize = 4096;

std::string_view asText(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

template <class Test>
ContentSignature signature(const Test& test) {
  return {std::string(test.typeName), std::string(test.category), std::string(test.mimeType)};
}

template <class Table>
const auto* find(const Table& table, std::string_view code) {
  const auto found =
      std::find_if(table.begin(), table.end(), [&](const auto& test) { return test.code == code; });
  return found == table.end() ? nullptr : &*found;
}

std::uint32_t bigEndian32(std::string_view bytes) {
  std::uint32_t value = 0;
  for (char c : bytes.substr(0, 4)) value = value << 8 | static_cast<unsigned char>(c);
  return value;
}

// The brands an ftyp box lists after its major brand and version, within the head.
std::optional<ContentSignature> fromCompatibleBrands(std::string_view head) {
  const std::size_t boxSize = std::min<std::size_t>({bigEndian32(head), head.size(), kMaxFtypSize});
  std::optional<ContentSignature> found;
  for (std::size_t at = 16; at + 4 <= boxSize; at += 4) {
    const auto* brand = find(kIsoMediaBrands, head.substr(at, 4));
    if (brand == nullptr || brand->category != "image") continue;
    // AVIF files list mif1 and an HEVC brand is rare beside avif: avif wins.
    if (brand->mimeType == "image/avif") return signature(*brand);
    if (!found) found = signature(*brand);
  }
  return found;
}

// A four-character code compared byte for byte: a byte above 0x7F can never equal the
// ASCII codes tested, which is what decoding the slice as ASCII would give too.
std::optional<ContentSignature> riffOrIsoMedia(std::string_view head) {
  const std::string_view form = head.substr(8, 4);
  if (head.substr(0, 4) == "RIFF") {
    if (const auto* riff = find(kRiffForms, form)) return signature(*riff);
  }
  if (head.substr(4, 4) != "ftyp") return std::nullopt;
  if (const auto* brand = find(kIsoMediaBrands, form)) return signature(*brand);
  if (std::find(kGenericHeifBrands.begin(), kGenericHeifBrands.end(), form) !=
      kGenericHeifBrands.end()) {
    if (auto image = fromCompatibleBrands(head)) return image;
    return ContentSignature{"HEIF image", "image", "image/heif"};
  }
  // Every other brand, the QuickTime one included: MPEG-4 media that may hold only sound.
  return ContentSignature{"MP4 / QuickTime media", "video", "", true};
}

bool looksLikePlainText(std::string_view head) {
  const auto printable = std::count_if(head.begin(), head.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte == 0x09 || byte == 0x0A || byte == 0x0D || (byte >= 0x20 && byte <= 0x7E);
  });
  return static_cast<double>(printable) / static_cast<double>(head.size()) > 0.95;
}

// The families the MIME database gives no common parent. Scripts are filed under
// application/x-executable by the database itself.
constexpr std::array<std::string_view, 8> kProgramTypes = {
    "application/x-executable",     "application/x-sharedlib",
    "application/x-pie-executable", "application/x-ms-dos-executable",
    "application/x-msdownload",     "application/vnd.microsoft.portable-executable",
    "application/x-mach-binary",    "application/x-dosexec",
};

constexpr std::array<std::string_view, 12> kCompressedStreamTypes = {
    "application/gzip",  "application/x-bzip", "application/x-bzip2",    "application/x-xz",
    "application/zstd",  "application/x-zstd", "application/x-lzma",     "application/x-lzip",
    "application/x-lz4", "application/x-lzop", "application/x-compress", "application/x-brotli",
};

template <std::size_t N>
bool conformsToAny(const ContentType& type, const std::array<std::string_view, N>& names) {
  return std::any_of(names.begin(), names.end(),
                     [&](std::string_view name) { return type.conformsTo(name); });
}

}  // namespace

std::optional<ContentSignature> contentSignatureOf(std::span<const std::byte> bytes) {
  const std::string_view head = asText(bytes.first(std::min(bytes.size(), kHeadSize)));
  if (head.empty()) return std::nullopt;

  for (const auto& test : kLeadingMagic) {
    if (head.starts_with(test.magic)) return signature(test);
  }
  // Too short for a RIFF form or an ISO brand: even a "RIFF" head goes on to the rest.
  if (head.size() >= 12) {
    if (auto media = riffOrIsoMedia(head)) return media;
  }
  // An ID3 tag leads MP3 audio most often, but FLAC and others may carry one too.
  if (head.starts_with("ID3")) return ContentSignature{"MP3 audio", "audio", ""};
  if (looksLikePlainText(head)) return ContentSignature{"Plain text", "text", "text/plain"};
  return std::nullopt;
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
  if (category == "executable") return isProgramType(type);
  if (category == "compressed") return isCompressedStreamType(type);
  return false;
}

bool isProgramType(const ContentType& type) { return conformsToAny(type, kProgramTypes); }

bool isCompressedStreamType(const ContentType& type) {
  return conformsToAny(type, kCompressedStreamTypes);
}

}  // namespace lumenscribe
