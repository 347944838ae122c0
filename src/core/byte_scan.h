// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Tests on eight bytes at once, for the scans over large texts: each gives a word with the
// high bit of every byte that passes the test set, and no other bit.
namespace lumenscribe::bytes {

inline constexpr std::uint64_t kOnes = 0x0101010101010101ULL;
inline constexpr std::uint64_t kHighBits = 0x8080808080808080ULL;

/// The eight bytes at `offset` (which must have eight bytes after it).
inline std::uint64_t load(std::string_view text, std::size_t offset) {
  std::uint64_t word = 0;
  std::memcpy(&word, text.data() + offset, 8);
  return word;
}

/// The bytes that are 0, exactly.
inline std::uint64_t zero(std::uint64_t word) {
  const std::uint64_t low = (word & ~kHighBits) + ~kHighBits;
  return ~(low | word | ~kHighBits);
}

/// The bytes equal to `c`, exactly.
inline std::uint64_t equal(std::uint64_t word, char c) {
  return zero(word ^ (kOnes * static_cast<std::uint8_t>(c)));
}

/// The bytes outside ASCII.
inline std::uint64_t nonAscii(std::uint64_t word) { return word & kHighBits; }

/// The ASCII bytes from `low` to `high` (both below 0x80); exact only for a word without
/// bytes outside ASCII, which may pass or not.
inline std::uint64_t asciiRange(std::uint64_t word, char low, char high) {
  return (word + kOnes * (0x80 - low)) & ~(word + kOnes * (0x80 - high - 1)) & kHighBits;
}

}  // namespace lumenscribe::bytes
