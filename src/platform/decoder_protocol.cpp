// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/decoder_protocol.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "core/utf8.h"

namespace lumenscribe::platform::decoder {

namespace {

template <class Number>
void putLittleEndian(std::span<std::byte> out, Number value) {
  for (std::size_t i = 0; i < sizeof(Number); ++i) {
    out[i] = static_cast<std::byte>((static_cast<std::uint64_t>(value) >> (8 * i)) & 0xFF);
  }
}

template <class Number>
Number getLittleEndian(std::span<const std::byte> in) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < sizeof(Number); ++i) {
    value |= std::to_integer<std::uint64_t>(in[i]) << (8 * i);
  }
  return static_cast<Number>(value);
}

bool readBool(Reader& in, bool& value) {
  const std::uint8_t byte = in.u8();
  value = byte == 1;
  return in.ok() && byte <= 1;
}

void writeOptionalText(Writer& out, const std::optional<std::string>& text) {
  out.u8(text.has_value());
  if (text) out.text(*text);
}

void writeOptionalNumber(Writer& out, const std::optional<std::int64_t>& number) {
  out.u8(number.has_value());
  if (number) out.i64(*number);
}

bool readUtf8(Reader& in, std::size_t maxSize, std::string& text) {
  text = in.text(maxSize);
  return in.ok() && utf8::isValid(text);
}

bool readOptionalText(Reader& in, std::size_t maxSize, std::optional<std::string>& text) {
  bool present = false;
  if (!readBool(in, present)) return false;
  if (!present) return true;
  text.emplace();
  return readUtf8(in, maxSize, *text);
}

bool readOptionalNumber(Reader& in, std::optional<std::int64_t>& number) {
  bool present = false;
  if (!readBool(in, present)) return false;
  if (present) number = in.i64();
  return in.ok();
}

bool readExtent(Reader& in, double& extent) {
  extent = std::bit_cast<double>(in.i64());
  return in.ok() && std::isfinite(extent) && extent >= 0;
}

}  // namespace

std::array<std::byte, kHeaderSize> encodeHeader(const FrameHeader& header) {
  std::array<std::byte, kHeaderSize> bytes{};
  putLittleEndian(std::span(bytes).subspan(0, 4), header.magic);
  putLittleEndian(std::span(bytes).subspan(4, 2), header.version);
  putLittleEndian(std::span(bytes).subspan(6, 2), header.kind);
  putLittleEndian(std::span(bytes).subspan(8, 4), header.length);
  putLittleEndian(std::span(bytes).subspan(12, 4), header.reserved);
  return bytes;
}

std::optional<FrameHeader> decodeHeader(std::span<const std::byte, kHeaderSize> bytes,
                                        std::uint32_t maxPayload) {
  FrameHeader header;
  header.magic = getLittleEndian<std::uint32_t>(bytes.subspan(0, 4));
  header.version = getLittleEndian<std::uint16_t>(bytes.subspan(4, 2));
  header.kind = getLittleEndian<std::uint16_t>(bytes.subspan(6, 2));
  header.length = getLittleEndian<std::uint32_t>(bytes.subspan(8, 4));
  header.reserved = getLittleEndian<std::uint32_t>(bytes.subspan(12, 4));
  if (header.magic != kMagic || header.version != kProtocolVersion) return std::nullopt;
  if (header.length > maxPayload || header.reserved != 0) return std::nullopt;
  return header;
}

void Writer::u32(std::uint32_t value) {
  std::byte out[4];
  putLittleEndian(std::span(out), value);
  bytes_.insert(bytes_.end(), out, out + 4);
}

void Writer::i64(std::int64_t value) {
  std::byte out[8];
  putLittleEndian(std::span(out), static_cast<std::uint64_t>(value));
  bytes_.insert(bytes_.end(), out, out + 8);
}

void Writer::bytes(std::span<const std::byte> value) {
  u32(static_cast<std::uint32_t>(value.size()));
  bytes_.insert(bytes_.end(), value.begin(), value.end());
}

void Writer::text(std::string_view value) { bytes(std::as_bytes(std::span(value))); }

std::span<const std::byte> Reader::take(std::size_t count) {
  if (!ok_ || count > bytes_.size()) {
    ok_ = false;
    return {};
  }
  const auto taken = bytes_.first(count);
  bytes_ = bytes_.subspan(count);
  return taken;
}

std::uint8_t Reader::u8() {
  const auto in = take(1);
  return in.empty() ? 0 : std::to_integer<std::uint8_t>(in[0]);
}

std::uint32_t Reader::u32() {
  const auto in = take(4);
  return in.empty() ? 0 : getLittleEndian<std::uint32_t>(in);
}

std::int64_t Reader::i64() {
  const auto in = take(8);
  return in.empty() ? 0 : static_cast<std::int64_t>(getLittleEndian<std::uint64_t>(in));
}

std::span<const std::byte> Reader::bytes(std::size_t maxSize) {
  const std::uint32_t size = u32();
  if (!ok_ || size > maxSize) {
    ok_ = false;
    return {};
  }
  return take(size);
}

std::string Reader::text(std::size_t maxSize) {
  const auto in = bytes(maxSize);
  return {reinterpret_cast<const char*>(in.data()), in.size()};
}

void write(Writer& out, ImageDecodeStatus status) { out.u8(static_cast<std::uint8_t>(status)); }

void write(Writer& out, const PdfOpenFacts& facts) {
  out.u8(facts.opened);
  out.u8(facts.encrypted);
  out.u8(facts.locked);
  out.i32(facts.pageCount);
}

void write(Writer& out, const PdfAnalysis& analysis) {
  out.u8(analysis.opened);
  out.u8(analysis.encrypted);
  out.u8(analysis.locked);
  out.i32(analysis.pageCount);
  out.i32(analysis.textPageCount);
  for (const auto* text : {&analysis.title, &analysis.author, &analysis.subject, &analysis.creator,
                           &analysis.producer}) {
    writeOptionalText(out, *text);
  }
  writeOptionalNumber(out, analysis.creationDate);
  writeOptionalNumber(out, analysis.modificationDate);
  out.u8(analysis.firstPageSize.has_value());
  if (analysis.firstPageSize) {
    out.i64(std::bit_cast<std::int64_t>(analysis.firstPageSize->width));
    out.i64(std::bit_cast<std::int64_t>(analysis.firstPageSize->height));
  }
  out.text(analysis.text);
  out.u8(analysis.textComplete);
}

void write(Writer& out, const PageRange& range) {
  out.i32(range.first);
  out.i32(range.count);
}

void write(Writer& out, const std::optional<RgbaImage>& image) {
  out.u8(image.has_value());
  if (!image) return;
  out.i32(image->width);
  out.i32(image->height);
  out.bytes(std::as_bytes(std::span(image->pixels)));
}

void write(Writer& out, const PreviewBox& box) {
  out.i32(box.maxWidth);
  out.i32(box.maxHeight);
}

void write(Writer& out, const ConfinementProbe& probe) {
  for (const std::int32_t value : {probe.openForWriting, probe.createSocket, probe.execute,
                                   probe.killParent, probe.readOutsideAllowed}) {
    out.i32(value);
  }
}

void write(Writer& out, const Confinement& confinement) {
  out.u8(confinement.noNewPrivileges);
  out.u8(confinement.seccomp);
  out.u8(confinement.landlock);
  out.u8(confinement.limits);
}

std::optional<ImageDecodeStatus> readImageDecodeStatus(Reader& in) {
  const std::uint8_t value = in.u8();
  if (!in.ok() || value > kLastImageDecodeStatus) return std::nullopt;
  return static_cast<ImageDecodeStatus>(value);
}

std::optional<PdfOpenFacts> readPdfOpenFacts(Reader& in) {
  PdfOpenFacts facts;
  if (!readBool(in, facts.opened) || !readBool(in, facts.encrypted) ||
      !readBool(in, facts.locked)) {
    return std::nullopt;
  }
  facts.pageCount = in.i32();
  if (!in.ok() || facts.pageCount < 0) return std::nullopt;
  return facts;
}

std::optional<PdfAnalysis> readPdfAnalysis(Reader& in) {
  PdfAnalysis analysis;
  if (!readBool(in, analysis.opened) || !readBool(in, analysis.encrypted) ||
      !readBool(in, analysis.locked)) {
    return std::nullopt;
  }
  analysis.pageCount = in.i32();
  analysis.textPageCount = in.i32();
  if (!in.ok() || analysis.pageCount < 0 || analysis.textPageCount < 0 ||
      analysis.textPageCount > analysis.pageCount) {
    return std::nullopt;
  }
  for (auto* text : {&analysis.title, &analysis.author, &analysis.subject, &analysis.creator,
                     &analysis.producer}) {
    if (!readOptionalText(in, kMaxPdfInfoText, *text)) return std::nullopt;
  }
  if (!readOptionalNumber(in, analysis.creationDate) ||
      !readOptionalNumber(in, analysis.modificationDate)) {
    return std::nullopt;
  }
  bool hasPageSize = false;
  if (!readBool(in, hasPageSize)) return std::nullopt;
  if (hasPageSize) {
    PageSize size;
    if (!readExtent(in, size.width) || !readExtent(in, size.height)) return std::nullopt;
    analysis.firstPageSize = size;
  }
  if (!readUtf8(in, kMaxPdfText, analysis.text) || !readBool(in, analysis.textComplete)) {
    return std::nullopt;
  }
  return analysis;
}

std::optional<PageRange> readPageRange(Reader& in) {
  PageRange range;
  range.first = in.i32();
  range.count = in.i32();
  if (!in.ok() || range.first < 0 || range.count < 0) return std::nullopt;
  return range;
}

std::optional<std::optional<RgbaImage>> readPreview(Reader& in, const PreviewBox& box) {
  bool present = false;
  if (!readBool(in, present)) return std::nullopt;
  if (!present) return std::optional<RgbaImage>();
  RgbaImage image;
  image.width = in.i32();
  image.height = in.i32();
  if (!in.ok() || image.width < 1 || image.height < 1 || image.width > box.maxWidth ||
      image.height > box.maxHeight) {
    return std::nullopt;
  }
  // Both sides are at most kMaxPreviewSide, so the product cannot overflow.
  const std::size_t expected = static_cast<std::size_t>(image.width) * image.height * 4;
  const auto pixels = in.bytes(expected);
  if (!in.ok() || pixels.size() != expected) return std::nullopt;
  image.pixels.resize(expected);
  std::transform(pixels.begin(), pixels.end(), image.pixels.begin(),
                 [](std::byte b) { return std::to_integer<std::uint8_t>(b); });
  return std::optional<RgbaImage>(std::move(image));
}

std::optional<PreviewBox> readPreviewBox(Reader& in) {
  PreviewBox box;
  box.maxWidth = in.i32();
  box.maxHeight = in.i32();
  if (!in.ok() || box.maxWidth < 1 || box.maxHeight < 1 || box.maxWidth > kMaxPreviewSide ||
      box.maxHeight > kMaxPreviewSide) {
    return std::nullopt;
  }
  return box;
}

std::optional<ConfinementProbe> readConfinementProbe(Reader& in) {
  ConfinementProbe probe;
  for (std::int32_t* value : {&probe.openForWriting, &probe.createSocket, &probe.execute,
                              &probe.killParent, &probe.readOutsideAllowed}) {
    *value = in.i32();
  }
  if (!in.ok()) return std::nullopt;
  return probe;
}

std::optional<Confinement> readConfinement(Reader& in) {
  Confinement confinement;
  if (!readBool(in, confinement.noNewPrivileges) || !readBool(in, confinement.seccomp) ||
      !readBool(in, confinement.landlock) || !readBool(in, confinement.limits)) {
    return std::nullopt;
  }
  return confinement;
}

}  // namespace lumenscribe::platform::decoder
