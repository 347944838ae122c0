// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Header-only, so that both sides of the decoder socket can check the texts they exchange
// without linking a Unicode library.
namespace lumenscribe::utf8 {

/// Length of the well-formed UTF-8 sequence at `offset`, or 0 when it is ill-formed
/// (overlong forms, surrogates, values past U+10FFFF and sequences cut short included).
inline std::size_t sequenceLength(std::string_view bytes, std::size_t offset) {
  const auto at = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[offset + i]); };
  const std::uint8_t lead = at(0);
  if (lead < 0x80) return 1;
  std::size_t length = 0;
  std::uint8_t low = 0x80;
  std::uint8_t high = 0xBF;  // allowed range of the second byte
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  } else {
    return 0;
  }
  if (bytes.size() - offset < length) return 0;
  if (at(1) < low || at(1) > high) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if (at(i) < 0x80 || at(i) > 0xBF) return 0;
  }
  return length;
}

/// True when every byte belongs to a well-formed UTF-8 sequence. ASCII is checked eight
/// bytes at a time, so that a large log costs little more than a read.
inline bool isValid(std::string_view bytes) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080ULL;
  std::size_t i = 0;
  const std::size_t size = bytes.size();
  while (i < size) {
    if (size - i >= 8) {
      std::uint64_t word = 0;
      std::memcpy(&word, bytes.data() + i, 8);
      if ((word & kHighBits) == 0) {
        i += 8;
        continue;
      }
    }
    const std::size_t length = sequenceLength(bytes, i);
    if (length == 0) return false;
    i += length;
  }
  return true;
}

/// One code point of a text and the bytes it takes.
struct CodePoint {
  char32_t value = 0;
  std::size_t length = 0;
};

/// The code point of two to four bytes, or an ill-formed byte, that starts at `offset`.
[[gnu::noinline]] inline CodePoint decodeMultibyteAt(std::string_view bytes, std::size_t offset) {
  const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[offset + i]); };
  const std::uint8_t lead = byte(0);
  switch (sequenceLength(bytes, offset)) {
    case 2: return {char32_t(lead & 0x1F) << 6 | char32_t(byte(1) & 0x3F), 2};
    case 3:
      return {
          char32_t(lead & 0x0F) << 12 | char32_t(byte(1) & 0x3F) << 6 | char32_t(byte(2) & 0x3F),
          3};
    case 4:
      return {char32_t(lead & 0x07) << 18 | char32_t(byte(1) & 0x3F) << 12 |
                  char32_t(byte(2) & 0x3F) << 6 | char32_t(byte(3) & 0x3F),
              4};
    default: return {0xFFFD, 1};
  }
}

/// The code point that starts at `offset` (< size); an ill-formed byte reads as U+FFFD of
/// length 1, so that a walk over any bytes always moves on.
inline CodePoint decodeAt(std::string_view bytes, std::size_t offset) {
  const auto lead = static_cast<std::uint8_t>(bytes[offset]);
  if (lead < 0x80) return {lead, 1};
  return decodeMultibyteAt(bytes, offset);
}

/// The code point that ends at `offset` (> floor) and starts at or after `floor`; what
/// decodeAt would have read there on a walk from `floor`, for well-formed text.
inline CodePoint decodeBefore(std::string_view bytes, std::size_t offset, std::size_t floor) {
  std::size_t start = offset - 1;
  const auto last = static_cast<std::uint8_t>(bytes[start]);
  if (last < 0x80) return {last, 1};
  while (start > floor && offset - start < 4 &&
         (static_cast<std::uint8_t>(bytes[start]) & 0xC0) == 0x80) {
    --start;
  }
  const CodePoint point = decodeAt(bytes, start);
  if (start + point.length == offset) return point;
  return {0xFFFD, 1};
}

}  // namespace lumenscribe::utf8
