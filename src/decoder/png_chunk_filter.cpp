// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/png_chunk_filter.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace lumenscribe::decoder {

namespace {

constexpr std::array<std::uint8_t, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
// The largest chunk length PNG allows.
constexpr std::uint32_t kMaxChunkLength = 0x7FFFFFFF;
// Length, type and CRC around every chunk's data.
constexpr std::size_t kChunkOverhead = 12;

// Critical chunks first: a chunk whose type starts with a capital letter must be understood,
// so only these four may pass.
constexpr std::array<std::string_view, 11> kKeptChunks = {
    "IHDR", "PLTE", "IDAT", "IEND", "tRNS", "gAMA", "cHRM", "sRGB", "iCCP", "sBIT", "pHYs"};

std::string_view typeText(std::span<const std::byte, 4> type) {
  return {reinterpret_cast<const char*>(type.data()), type.size()};
}

std::uint32_t bigEndian32(std::span<const std::byte> bytes) {
  return std::to_integer<std::uint32_t>(bytes[0]) << 24 |
         std::to_integer<std::uint32_t>(bytes[1]) << 16 |
         std::to_integer<std::uint32_t>(bytes[2]) << 8 | std::to_integer<std::uint32_t>(bytes[3]);
}

void appendBigEndian(std::vector<std::byte>& out, std::uint32_t value, int bytes) {
  for (int shift = (bytes - 1) * 8; shift >= 0; shift -= 8) {
    out.push_back(static_cast<std::byte>((value >> shift) & 0xFF));
  }
}

bool isLetter(std::byte byte) {
  const auto c = std::to_integer<unsigned char>(byte);
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool isCritical(std::span<const std::byte, 4> type) {
  const auto first = std::to_integer<unsigned char>(type[0]);
  return first >= 'A' && first <= 'Z';
}

void appendExifChunk(std::vector<std::byte>& out, std::uint16_t orientation) {
  const std::vector<std::byte> block = orientationExifBlock(orientation);
  appendBigEndian(out, static_cast<std::uint32_t>(block.size()), 4);
  const std::size_t typeAt = out.size();
  for (const char c : std::string_view("eXIf")) out.push_back(static_cast<std::byte>(c));
  out.insert(out.end(), block.begin(), block.end());
  // The one chunk made here, so the one CRC computed here: over type and data.
  const uLong crc = crc32(crc32(0, nullptr, 0), reinterpret_cast<const Bytef*>(&out[typeAt]),
                          static_cast<uInt>(out.size() - typeAt));
  appendBigEndian(out, static_cast<std::uint32_t>(crc), 4);
}

}  // namespace

bool isKeptPngChunk(std::span<const std::byte, 4> type) {
  return std::find(kKeptChunks.begin(), kKeptChunks.end(), typeText(type)) != kKeptChunks.end();
}

std::vector<std::byte> orientationExifBlock(std::uint16_t orientation) {
  std::vector<std::byte> block;
  for (const char c : std::string_view("MM\0*", 4)) block.push_back(static_cast<std::byte>(c));
  appendBigEndian(block, 8, 4);            // IFD0 right after the header
  appendBigEndian(block, 1, 2);            // one entry
  appendBigEndian(block, 0x0112, 2);       // Orientation
  appendBigEndian(block, 3, 2);            // SHORT
  appendBigEndian(block, 1, 4);            // one value
  appendBigEndian(block, orientation, 2);  // the value, left-justified in its four bytes
  appendBigEndian(block, 0, 2);
  appendBigEndian(block, 0, 4);  // no next IFD
  return block;
}

std::optional<std::vector<std::byte>> filterPngChunks(std::span<const std::byte> png,
                                                      std::optional<std::uint16_t> orientation) {
  if (png.size() < kSignature.size() ||
      !std::equal(kSignature.begin(), kSignature.end(), png.begin(),
                  [](std::uint8_t a, std::byte b) { return std::byte{a} == b; })) {
    return std::nullopt;
  }
  const bool addOrientation = orientation && *orientation >= 1 && *orientation <= 8;
  std::vector<std::byte> out(png.begin(), png.begin() + kSignature.size());
  out.reserve(png.size());
  bool sawHeader = false;
  bool sawData = false;
  // Every pass consumes at least one chunk's 12 bytes, so the walk ends with the data.
  for (std::size_t at = kSignature.size();;) {
    if (png.size() - at < kChunkOverhead) return std::nullopt;  // no IEND
    const std::uint32_t length = bigEndian32(png.subspan(at, 4));
    if (length > kMaxChunkLength || length > png.size() - at - kChunkOverhead) return std::nullopt;
    const auto type = png.subspan(at + 4).first<4>();
    if (!std::all_of(type.begin(), type.end(), isLetter)) return std::nullopt;
    const std::string_view name = typeText(type);
    if (sawHeader == (name == "IHDR")) return std::nullopt;  // IHDR first, and only once
    sawHeader = true;

    const std::size_t chunkSize = kChunkOverhead + length;
    if (isKeptPngChunk(type)) {
      if (name == "IDAT" && !sawData) {
        sawData = true;
        if (addOrientation) appendExifChunk(out, *orientation);
      }
      if (name == "IEND" && !sawData) return std::nullopt;
      const auto chunk = png.subspan(at, chunkSize);
      out.insert(out.end(), chunk.begin(), chunk.end());
      if (name == "IEND") return out;  // whatever follows is not part of the image
    } else if (isCritical(type)) {
      return std::nullopt;  // a chunk the image needs and we cannot vouch for
    }
    at += chunkSize;
  }
}

}  // namespace lumenscribe::decoder
