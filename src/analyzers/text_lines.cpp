// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/text_lines.h"

#include "core/utf8.h"

namespace lumenscribe {

std::vector<std::string_view> splitLines(std::string_view text) {
  std::vector<std::string_view> pieces;
  std::size_t start = 0;
  for (std::size_t offset = 0; offset < text.size();) {
    const auto lead = static_cast<std::uint8_t>(text[offset]);
    // Every separator outside ASCII begins with C2 or E2.
    if (lead >= 0x80 && lead != 0xC2 && lead != 0xE2) {
      ++offset;
      continue;
    }
    const utf8::CodePoint point = utf8::decodeAt(text, offset);
    if (isLineSeparator(point.value)) {
      pieces.push_back(text.substr(start, offset - start));
      start = offset + point.length;
    }
    offset += point.length;
  }
  pieces.push_back(text.substr(start));
  return pieces;
}

bool joinsLoneCarriageReturn(std::string_view text, std::size_t offset) {
  // Pairs never overlap, so each run of pairs is walked back over by the one LF after it.
  while (offset >= 2 && text[offset - 2] == '\r' && text[offset - 1] == '\n') offset -= 2;
  return offset >= 1 && text[offset - 1] == '\r';
}

LineEndingCounts countLineEndings(std::string_view text) {
  LineEndingCounts counts;
  for (std::size_t offset = 0; offset < text.size(); ++offset) {
    const char c = text[offset];
    if (c == '\r') {
      if (offset + 1 < text.size() && text[offset + 1] == '\n') {
        ++counts.crlf;
        ++offset;
      } else {
        ++counts.cr;
      }
    } else if (c == '\n') {
      if (joinsLoneCarriageReturn(text, offset)) {
        --counts.cr;
      } else {
        ++counts.lf;
      }
    }
  }
  return counts;
}

std::string_view lineEndingLabel(const LineEndingCounts& counts) {
  const int kinds = (counts.crlf > 0) + (counts.lf > 0) + (counts.cr > 0);
  if (kinds == 0) return "Single line / none detected";
  if (kinds > 1) return "Mixed";
  if (counts.crlf > 0) return "Windows (CRLF)";
  if (counts.lf > 0) return "Unix/macOS (LF)";
  return "Classic Mac (CR)";
}

std::string_view describeLineEndings(std::string_view text) {
  return lineEndingLabel(countLineEndings(text));
}

}  // namespace lumenscribe
