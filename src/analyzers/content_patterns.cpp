// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/content_patterns.h"

#include <string.h>
#include <unicode/uchar.h>
#include <unicode/uniset.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include "core/byte_scan.h"
#include "core/utf8.h"

// Running ICU's RegexMatcher over a large text is slow (about 12 MB/s for the four patterns
// over a log, most of it for the case-insensitive e-mail pattern), and a backtracking engine
// can be driven quadratic by a hostile file. Each pattern is simple enough to be matched by
// hand instead, with the exact semantics ICU gives it:
//   - leftmost match first, non-overlapping, greedy quantifiers backtracking in order;
//   - `\d` is any code point of general category Nd, `\s` any with the White_Space property;
//   - the case-insensitive classes are ICU's case closure of the written class (which adds
//     a-z, U+017F LATIN SMALL LETTER LONG S and U+212A KELVIN SIGN to A-Z).
// Where a pattern can backtrack, the matcher below tries the alternatives in the order the
// expression lists them; where the structure of a pattern makes backtracking pointless, the
// comment says why.
namespace lumenscribe {

namespace {

using utf8::CodePoint;
using utf8::decodeAt;
using utf8::decodeBefore;

constexpr std::size_t kNoMatch = static_cast<std::size_t>(-1);

bool isDigit(char32_t c) {
  if (c < 0x80) return c >= '0' && c <= '9';
  return u_charType(static_cast<UChar32>(c)) == U_DECIMAL_DIGIT_NUMBER;
}

bool isSpace(char32_t c) {
  if (c < 0x80) return c == ' ' || (c >= 0x09 && c <= 0x0D);
  return u_isUWhiteSpace(static_cast<UChar32>(c));
}

// A set of code points with a table for ASCII; built from ICU's own case closure.
class CharacterSet {
 public:
  explicit CharacterSet(const char16_t* pattern, bool caseInsensitive) {
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeSet set(icu::UnicodeString(pattern), status);
    if (U_FAILURE(status)) return;
    if (caseInsensitive) set.closeOver(USET_CASE_INSENSITIVE);
    set.removeAllStrings();
    set.freeze();
    for (char32_t c = 0; c < 0x80; ++c) ascii_[c] = set.contains(static_cast<UChar32>(c));
    others_ = set;
    ok_ = true;
  }

  bool ok() const { return ok_; }
  bool contains(char32_t c) const {
    return c < 0x80 ? ascii_[c] : others_.contains(static_cast<UChar32>(c));
  }

 private:
  std::array<bool, 0x80> ascii_{};
  icu::UnicodeSet others_;
  bool ok_ = false;
};

// ---- Web links: https?://[^\s<>"']+ ---------------------------------------------------

bool isLinkCharacter(char32_t c) {
  return !isSpace(c) && c != '<' && c != '>' && c != '"' && c != '\'';
}

std::int64_t countWebLinks(std::string_view text) {
  std::int64_t count = 0;
  std::size_t from = 0;
  while (from < text.size()) {
    const void* found = ::memmem(text.data() + from, text.size() - from, "http", 4);
    if (found == nullptr) break;
    const std::size_t start = static_cast<const char*>(found) - text.data();
    // With the optional s taken, "://" must follow it; without it, ':' would have to be
    // where the s is. So an s is taken whenever it is there, and nothing is retried.
    std::size_t scheme = start + 4;
    if (scheme < text.size() && text[scheme] == 's') ++scheme;
    std::size_t end = scheme + 3;
    if (text.substr(scheme, 3) == "://") {
      while (end < text.size()) {
        const CodePoint point = decodeAt(text, end);
        if (!isLinkCharacter(point.value)) break;
        end += point.length;
      }
    }
    if (end > scheme + 3 && text.substr(scheme, 3) == "://") {
      ++count;
      from = end;
    } else {
      from = start + 1;
    }
  }
  return count;
}

// ---- E-mail addresses: [A-Z0-9._%+-]+@[A-Z0-9.-]+\.[A-Z]{2,}, case-insensitive -----------

struct EmailClasses {
  CharacterSet local{u"[A-Z0-9._%+\\-]", true};
  CharacterSet domain{u"[A-Z0-9.\\-]", true};
  CharacterSet letter{u"[A-Z]", true};
};

const EmailClasses& emailClasses() {
  static const EmailClasses classes;
  return classes;
}

// '@' is in neither the local nor the domain class, so a match's local part is the whole
// run of local characters before an '@' (cut at `from`, where the scan resumed), every start
// in that run succeeds or fails together, and the '@' of each match is the first '@' at or
// after its start. The domain run is taken whole and given back from its end until a '.'
// followed by two letters is found: the last such dot, with the letters after it taken
// greedily, ends the match.
std::int64_t countEmailAddresses(std::string_view text) {
  const EmailClasses& classes = emailClasses();
  if (!classes.local.ok() || !classes.domain.ok() || !classes.letter.ok()) return 0;
  const auto isLetterAt = [&](std::size_t offset, std::size_t& end) {
    if (offset >= text.size()) return false;
    const CodePoint point = decodeAt(text, offset);
    end = offset + point.length;
    return classes.letter.contains(point.value);
  };

  std::int64_t count = 0;
  std::size_t from = 0;
  while (from < text.size()) {
    const void* found = std::memchr(text.data() + from, '@', text.size() - from);
    if (found == nullptr) break;
    const std::size_t at = static_cast<const char*>(found) - text.data();
    std::size_t start = at;
    while (start > from) {
      const CodePoint point = decodeBefore(text, start, from);
      if (!classes.local.contains(point.value)) break;
      start -= point.length;
    }
    std::size_t lastDot = kNoMatch;
    if (start < at) {
      std::size_t offset = at + 1;
      while (offset < text.size()) {
        const CodePoint point = decodeAt(text, offset);
        if (!classes.domain.contains(point.value)) break;
        std::size_t first = 0;
        std::size_t second = 0;
        if (point.value == '.' && offset > at + 1 && isLetterAt(offset + 1, first) &&
            isLetterAt(first, second)) {
          lastDot = offset;
        }
        offset += point.length;
      }
    }
    if (lastDot == kNoMatch) {
      from = at + 1;
      continue;
    }
    std::size_t end = lastDot + 1;
    for (std::size_t next = 0; isLetterAt(end, next);) end = next;
    ++count;
    from = end;
  }
  return count;
}

// ---- IPv4 addresses and phone-like numbers ----------------------------------------------

// Both patterns are small backtracking searches from each place a match may start; every
// alternative and optional part below is tried in the expression's order, greedy first, and
// the first way through gives the match. Each start costs a bounded amount of work.
class DigitPatterns {
 public:
  explicit DigitPatterns(std::string_view text) : text_(text) {}

  // (?<!\d)(?:(?:25[0-5]|2[0-4]\d|1?\d?\d)\.){3}(?:25[0-5]|2[0-4]\d|1?\d?\d)(?!\d)
  std::size_t ipAddressAt(std::size_t start) const {
    const auto dot = [&](std::size_t offset, auto next) {
      return byte(offset) == '.' ? next(offset + 1) : kNoMatch;
    };
    return octet(start, [&](std::size_t a) {
      return dot(a, [&](std::size_t b) {
        return octet(b, [&](std::size_t c) {
          return dot(c, [&](std::size_t d) {
            return octet(d, [&](std::size_t e) {
              return dot(e, [&](std::size_t f) {
                return octet(f, [&](std::size_t end) { return notDigitAt(end); });
              });
            });
          });
        });
      });
    });
  }

  // (?<!\d)(?:\+?1[\s.-]?)?(?:\(?\d{3}\)?[\s.-]?)\d{3}[\s.-]\d{4}(?!\d)
  std::size_t phoneNumberAt(std::size_t start) const {
    const auto rest = [&](std::size_t offset) {
      return optionalByte(offset, '(', [&](std::size_t areaCode) {
        const std::size_t afterAreaCode = digits(areaCode, 3);
        if (afterAreaCode == kNoMatch) return kNoMatch;
        return optionalByte(afterAreaCode, ')', [&](std::size_t closed) {
          return optionalSeparator(closed, [&](std::size_t exchange) {
            const std::size_t afterExchange = digits(exchange, 3);
            if (afterExchange == kNoMatch) return kNoMatch;
            const std::size_t line = separatorEnd(afterExchange);
            if (line == kNoMatch) return kNoMatch;
            const std::size_t end = digits(line, 4);
            return end == kNoMatch ? kNoMatch : notDigitAt(end);
          });
        });
      });
    };
    const auto countryCode = [&](std::size_t offset) {
      if (byte(offset) != '1') return kNoMatch;
      return optionalSeparator(offset + 1, rest);
    };
    std::size_t end = kNoMatch;
    if (byte(start) == '+') end = countryCode(start + 1);
    if (end == kNoMatch) end = countryCode(start);
    if (end == kNoMatch) end = rest(start);
    return end;
  }

  bool digitBefore(std::size_t offset) const {
    return offset > 0 && isDigit(decodeBefore(text_, offset, 0).value);
  }

 private:
  // The byte at `offset`, 0 past the end; compared only with ASCII literals.
  char byte(std::size_t offset) const { return offset < text_.size() ? text_[offset] : '\0'; }

  std::size_t digitEnd(std::size_t offset) const {
    if (offset >= text_.size()) return kNoMatch;
    const CodePoint point = decodeAt(text_, offset);
    return isDigit(point.value) ? offset + point.length : kNoMatch;
  }

  std::size_t digits(std::size_t offset, int count) const {
    for (int i = 0; i < count && offset != kNoMatch; ++i) offset = digitEnd(offset);
    return offset;
  }

  std::size_t notDigitAt(std::size_t offset) const {
    return digitEnd(offset) == kNoMatch ? offset : kNoMatch;
  }

  std::size_t separatorEnd(std::size_t offset) const {
    if (offset >= text_.size()) return kNoMatch;
    const CodePoint point = decodeAt(text_, offset);
    const bool separator = point.value == '.' || point.value == '-' || isSpace(point.value);
    return separator ? offset + point.length : kNoMatch;
  }

  template <class Next>
  std::size_t optionalByte(std::size_t offset, char literal, Next next) const {
    if (byte(offset) == literal) {
      if (const std::size_t end = next(offset + 1); end != kNoMatch) return end;
    }
    return next(offset);
  }

  template <class Next>
  std::size_t optionalSeparator(std::size_t offset, Next next) const {
    if (const std::size_t after = separatorEnd(offset); after != kNoMatch) {
      if (const std::size_t end = next(after); end != kNoMatch) return end;
    }
    return next(offset);
  }

  // 25[0-5]|2[0-4]\d|1?\d?\d, then `next`.
  template <class Next>
  std::size_t octet(std::size_t offset, Next next) const {
    const char first = byte(offset);
    const char second = byte(offset + 1);
    std::size_t end = kNoMatch;
    if (first == '2' && second == '5' && byte(offset + 2) >= '0' && byte(offset + 2) <= '5') {
      end = next(offset + 3);
      if (end != kNoMatch) return end;
    }
    if (first == '2' && second >= '0' && second <= '4') {
      if (const std::size_t third = digitEnd(offset + 2); third != kNoMatch) {
        end = next(third);
        if (end != kNoMatch) return end;
      }
    }
    // \d?\d: two digits, else one.
    const auto oneOrTwoDigits = [&](std::size_t from) {
      const std::size_t one = digitEnd(from);
      if (one == kNoMatch) return kNoMatch;
      if (const std::size_t two = digitEnd(one); two != kNoMatch) {
        if (const std::size_t found = next(two); found != kNoMatch) return found;
      }
      return next(one);
    };
    if (first == '1') {
      end = oneOrTwoDigits(offset + 1);
      if (end != kNoMatch) return end;
    }
    return oneOrTwoDigits(offset);
  }

  std::string_view text_;
};

bool isAsciiDigit(char c) { return c >= '0' && c <= '9'; }

// The first byte at or after `from` that may begin an IPv4 address or a phone-like number:
// an ASCII digit, '+', '(' or any byte outside ASCII (which may begin a digit of another
// script).
std::size_t nextDigitPatternStart(std::string_view text, std::size_t from) {
  for (; from + 8 <= text.size(); from += 8) {
    const std::uint64_t word = bytes::load(text, from);
    if ((bytes::nonAscii(word) | bytes::asciiRange(word, '0', '9') | bytes::equal(word, '+') |
         bytes::equal(word, '(')) != 0) {
      break;
    }
  }
  for (; from < text.size(); ++from) {
    const char c = text[from];
    if (isAsciiDigit(c) || c == '+' || c == '(' || static_cast<std::uint8_t>(c) >= 0x80) break;
  }
  return from;
}

// The first ASCII digit at or after `from`, or the end.
std::size_t nextAsciiDigit(std::string_view text, std::size_t from) {
  for (; from + 8 <= text.size(); from += 8) {
    if (bytes::asciiRange(bytes::load(text, from) & ~bytes::kHighBits, '0', '9') != 0) break;
  }
  while (from < text.size() && !isAsciiDigit(text[from])) ++from;
  return from;
}

// The first byte outside ASCII at or after `from`, or the end.
std::size_t nextNonAscii(std::string_view text, std::size_t from) {
  for (; from + 8 <= text.size(); from += 8) {
    if (bytes::nonAscii(bytes::load(text, from)) != 0) break;
  }
  while (from < text.size() && static_cast<std::uint8_t>(text[from]) < 0x80) ++from;
  return from;
}

// Cheap tests that rule out most places where a match cannot start, so that the matchers
// run only where one may. Each is a necessary condition on ASCII bytes and lets anything
// through where a byte outside ASCII (a digit or a space of another script) could count.
class Prefilter {
 public:
  explicit Prefilter(std::string_view text) : text_(text), nonAscii_(nextNonAscii(text, 0)) {}

  // An IPv4 address begins with an octet of one to three digits and a dot; `runEnd` ends
  // the ASCII digits that begin at `start`.
  bool mayBeIpAddress(std::size_t start, std::size_t runEnd) const {
    if (runEnd - start > 3) return false;
    return runEnd == text_.size() || static_cast<std::uint8_t>(text_[runEnd]) >= 0x80 ||
           text_[runEnd] == '.';
  }

  // A phone-like number ends in a digit, a separator and four digits, and at most nine
  // characters ("+1 (555) ") come before the three digits that end in that digit: in ASCII
  // text, such a separator lies 3 to 12 bytes after the start.
  bool mayBePhoneNumber(std::size_t start) {
    constexpr std::size_t kLongestMatch = 17 * 4;  // 17 characters of up to 4 bytes
    if (nonAscii_ < start) nonAscii_ = nextNonAscii(text_, start);
    if (nonAscii_ < start + kLongestMatch && nonAscii_ < text_.size()) return true;
    if (tail_ < start + 3) tail_ = findTail(std::max(start + 3, tailFrom_));
    return tail_ <= start + 12;
  }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  static bool isAsciiSeparator(char c) {
    return c == ' ' || (c >= 0x09 && c <= 0x0D) || c == '.' || c == '-';
  }

  // The separator of the next "digit, separator, four digits, no digit" at or after `from`.
  std::size_t findTail(std::size_t from) {
    std::size_t run = from + 1;
    while ((run = nextAsciiDigit(text_, run)) < text_.size()) {
      std::size_t end = run;
      while (end < text_.size() && isAsciiDigit(text_[end])) ++end;
      if (end - run == 4 && run >= 2 && isAsciiSeparator(text_[run - 1]) &&
          isAsciiDigit(text_[run - 2])) {
        tailFrom_ = run - 1;
        return run - 1;
      }
      run = end;
    }
    tailFrom_ = text_.size();
    return kNone;
  }

  std::string_view text_;
  std::size_t nonAscii_;  // the first byte outside ASCII at or after the last start
  std::size_t tail_ = 0;
  std::size_t tailFrom_ = 0;  // where the next search for a tail may begin
};

constexpr std::size_t kUndecided = kNoMatch - 1;

// The IPv4 pattern where its digits are ASCII: then every octet must take its whole run of
// digits (a digit left over could be neither the dot nor the end the pattern needs next),
// so the address is four runs of one to three digits joined by dots, each of which the
// octet alternatives match whole. kUndecided where a byte outside ASCII touches a run: a
// digit of another script could lengthen it.
std::size_t asciiIpAddressAt(std::string_view text, std::size_t start) {
  std::size_t offset = start;
  for (int octet = 0; octet < 4; ++octet) {
    const std::size_t run = offset;
    while (offset < text.size() && offset - run <= 3 && isAsciiDigit(text[offset])) ++offset;
    const std::size_t length = offset - run;
    if (offset < text.size() && static_cast<std::uint8_t>(text[offset]) >= 0x80) return kUndecided;
    if (length == 0 || length > 3) return kNoMatch;
    if (length == 3) {
      const char first = text[run];
      const char second = text[run + 1];
      const bool matches = first == '1' || (first == '2' && second <= '4') ||
                           (first == '2' && second == '5' && text[run + 2] <= '5');
      if (!matches) return kNoMatch;
    }
    if (octet < 3) {
      if (offset >= text.size() || text[offset] != '.') return kNoMatch;
      ++offset;
    }
  }
  return offset;
}

// Both patterns in one walk over the text, each resuming after its own last match. Both
// begin with (?<!\d), so of a run of digits only the first can begin one.
void countDigitPatterns(std::string_view text, ContentCounts& counts) {
  const DigitPatterns patterns(text);
  Prefilter prefilter(text);
  std::size_t nextIpAddress = 0;
  std::size_t nextPhoneNumber = 0;
  std::size_t offset = 0;
  while ((offset = nextDigitPatternStart(text, offset)) < text.size()) {
    const char lead = text[offset];
    std::size_t next = offset + 1;
    bool digit = false;
    bool mayBeIpAddress = false;
    if (isAsciiDigit(lead)) {
      while (next < text.size() && isAsciiDigit(text[next])) ++next;
      digit = true;
      mayBeIpAddress = prefilter.mayBeIpAddress(offset, next);
    } else if (static_cast<std::uint8_t>(lead) >= 0x80) {
      const CodePoint point = decodeAt(text, offset);
      next = offset + point.length;
      digit = mayBeIpAddress = isDigit(point.value);
      if (!digit) {
        offset = next;
        continue;
      }
    }
    const bool ipAddressDue = mayBeIpAddress && offset >= nextIpAddress;
    const bool phoneNumberDue = offset >= nextPhoneNumber;
    if ((ipAddressDue || phoneNumberDue) && !patterns.digitBefore(offset)) {
      if (ipAddressDue) {
        std::size_t end = asciiIpAddressAt(text, offset);
        if (end == kUndecided) end = patterns.ipAddressAt(offset);
        if (end != kNoMatch) {
          ++counts.ipAddresses;
          nextIpAddress = end;
        }
      }
      if (phoneNumberDue && prefilter.mayBePhoneNumber(offset)) {
        if (const std::size_t end = patterns.phoneNumberAt(offset); end != kNoMatch) {
          ++counts.phoneNumbers;
          nextPhoneNumber = end;
        }
      }
    }
    offset = next;
  }
}

}  // namespace

ContentCounts countContentPatterns(std::string_view text) {
  ContentCounts counts;
  counts.emailAddresses = countEmailAddresses(text);
  counts.webLinks = countWebLinks(text);
  countDigitPatterns(text, counts);
  return counts;
}

}  // namespace lumenscribe
