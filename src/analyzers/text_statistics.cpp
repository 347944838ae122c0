// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/text_statistics.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <bit>

#include "core/byte_scan.h"
#include "core/utf8.h"
#include "platform/grapheme_clusters.h"

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

// Words and white space of eight ASCII bytes none of which ends a line, at once: a word
// begins at every byte that is not a tab or a space and follows one (or follows the
// white space or line start before the eight). False when the bytes are not such bytes.
bool countWordsOfEightBytes(std::uint64_t word, bool& inWord, bool& pieceBlank,
                            std::int64_t& words) {
  if (bytes::nonAscii(word) != 0 || bytes::asciiRange(word, 0x0A, 0x0D) != 0) return false;
  const std::uint64_t space = bytes::equal(word, ' ') | bytes::equal(word, '\t');
  const std::uint64_t other = ~space & bytes::kHighBits;
  const std::uint64_t afterSpace = (space << 8) | (inWord ? 0 : 0x80);
  words += std::popcount(other & afterSpace);
  if (other != 0) pieceBlank = false;
  inWord = (other >> 63) != 0;
  return true;
}

}  // namespace

bool isWhiteSpaceOrNewline(char32_t c) {
  if (c < 0x80) return c == ' ' || (c >= 0x09 && c <= 0x0D);
  return c == 0x85 || (U_GET_GC_MASK(static_cast<UChar32>(c)) & U_GC_Z_MASK) != 0;
}

TextStatistics computeTextStatistics(std::string_view text) {
  TextStatistics stats;
  stats.lines = 0;
  platform::GraphemeCounter graphemes;

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
    if (text.size() - offset >= 8 &&
        countWordsOfEightBytes(bytes::load(text, offset), inWord, pieceBlank, stats.words)) {
      offset += 8;
      continue;
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
