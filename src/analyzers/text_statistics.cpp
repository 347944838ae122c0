// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/text_statistics.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "analyzers/grapheme_clusters.h"
#include "core/utf8.h"

namespace lumenscribe {

namespace {

enum class AsciiKind : std::uint8_t { word, space, separator };

constexpr std::array<AsciiKind, 0x80> kAsciiKinds = [] {
  std::array<AsciiKind, 0x80> kinds{};
  kinds['\t'] = AsciiKind::space;
  kinds[' '] = AsciiKind::space;
  for (char c = 0x0A; c <= 0x0D; ++c) kinds[static_cast<std::size_t>(c)] = AsciiKind::separator;
  return kinds;
}();

// Whether all eight bytes are printable ASCII other than the space (0x21 to 0x7E): the
// common case of a log, where nothing but the word already begun goes on.
bool allWordBytes(std::uint64_t word) {
  constexpr std::uint64_t kOnes = 0x0101010101010101ULL;
  constexpr std::uint64_t kHighBits = 0x8080808080808080ULL;
  const bool below = ((word - kOnes * 0x21) & ~word & kHighBits) != 0;
  const bool above = (((word + kOnes) | word) & kHighBits) != 0;
  return !below && !above;
}

}  // namespace

bool isWhiteSpaceOrNewline(char32_t c) {
  if (c < 0x80) return c == ' ' || (c >= 0x09 && c <= 0x0D);
  return c == 0x85 || (U_GET_GC_MASK(static_cast<UChar32>(c)) & U_GC_Z_MASK) != 0;
}

TextStatistics computeTextStatistics(std::string_view text) {
  TextStatistics stats;
  stats.lines = 0;
  GraphemeCounter graphemes;

  std::size_t pieceStart = 0;
  bool pieceAscii = true;  // an ASCII piece has one cluster per byte (it holds no CR LF)
  bool pieceBlank = true;
  bool inWord = false;
  const auto endPiece = [&](std::size_t end) {
    ++stats.lines;
    if (pieceBlank) ++stats.blankLines;
    const std::string_view piece = text.substr(pieceStart, end - pieceStart);
    const std::int64_t length =
        pieceAscii ? static_cast<std::int64_t>(piece.size()) : graphemes.count(piece);
    stats.characters += length;
    stats.longestLine = std::max(stats.longestLine, length);
  };
  const auto startPiece = [&](std::size_t start) {
    pieceStart = start;
    pieceAscii = true;
    pieceBlank = true;
    inWord = false;
  };
  const auto wordCharacter = [&] {
    pieceBlank = false;
    if (!inWord) ++stats.words;
    inWord = true;
  };

  std::size_t offset = 0;
  while (offset < text.size()) {
    if (text.size() - offset >= 8) {
      std::uint64_t word = 0;
      std::memcpy(&word, text.data() + offset, 8);
      if (allWordBytes(word)) {
        wordCharacter();
        offset += 8;
        continue;
      }
    }
    const auto lead = static_cast<std::uint8_t>(text[offset]);
    if (lead < 0x80) {
      const AsciiKind kind = kAsciiKinds[lead];
      if (kind == AsciiKind::word) {
        wordCharacter();
        ++offset;
        continue;
      }
      if (kind == AsciiKind::space) {
        inWord = false;
        ++offset;
        continue;
      }
      endPiece(offset);
      ++stats.characters;  // the separator, and for CR LF the pair
      if (lead == '\r' && offset + 1 < text.size() && text[offset + 1] == '\n') {
        ++stats.lineEndings.crlf;
        startPiece(offset + 1);
        endPiece(offset + 1);  // the empty piece between CR and LF
        startPiece(offset + 2);
        offset += 2;
        continue;
      }
      if (lead == '\r') {
        ++stats.lineEndings.cr;
      } else if (lead == '\n') {
        if (joinsLoneCarriageReturn(text, offset)) {
          --stats.lineEndings.cr;
        } else {
          ++stats.lineEndings.lf;
        }
      }
      startPiece(offset + 1);
      ++offset;
      continue;
    }
    const utf8::CodePoint point = utf8::decodeAt(text, offset);
    if (isLineSeparator(point.value)) {
      endPiece(offset);
      ++stats.characters;
      startPiece(offset + point.length);
      offset += point.length;
      continue;
    }
    pieceAscii = false;
    if (isWhiteSpaceOrNewline(point.value)) {
      inWord = false;
    } else {
      wordCharacter();
    }
    offset += point.length;
  }
  endPiece(text.size());
  return stats;
}

}  // namespace lumenscribe
