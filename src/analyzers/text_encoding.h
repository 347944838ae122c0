// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace lumenscribe {

/// The encodings a text file is tried in.
enum class TextEncoding {
  utf8,
  utf16,  // byte order from a byte-order mark, big-endian without one
  utf16LittleEndian,
  utf16BigEndian,
  utf32,    // byte order from a byte-order mark, big-endian without one
  unicode,  // the same 16-bit encoding as utf16, under the name the platform gives it
  macOSRoman,
  isoLatin1,
};

struct CandidateEncoding {
  TextEncoding encoding;
  std::string_view name;  // what the result shows
};

/// The candidates in the order they are tried; the first that accepts a file's bytes decides.
inline constexpr std::array<CandidateEncoding, 8> kCandidateEncodings = {{
    {TextEncoding::utf8, "UTF-8"},
    {TextEncoding::utf16, "UTF-16"},
    {TextEncoding::utf16LittleEndian, "UTF-16 LE"},
    {TextEncoding::utf16BigEndian, "UTF-16 BE"},
    {TextEncoding::utf32, "UTF-32"},
    {TextEncoding::unicode, "Unicode"},
    {TextEncoding::macOSRoman, "Mac OS Roman"},
    {TextEncoding::isoLatin1, "ISO Latin-1"},
}};

/// Text decoded from bytes, as UTF-8 without its byte-order mark. UTF-8 input is not copied:
/// the text then views the bytes it was decoded from, which must outlive it.
class DecodedText {
 public:
  DecodedText(std::string_view encodingName, std::string_view view)
      : encodingName_(encodingName), view_(view) {}
  DecodedText(std::string_view encodingName, std::string text)
      : encodingName_(encodingName), owned_(std::move(text)), ownsText_(true) {}

  std::string_view encodingName() const { return encodingName_; }
  std::string_view text() const { return ownsText_ ? std::string_view(owned_) : view_; }

 private:
  std::string_view encodingName_;
  std::string_view view_;
  std::string owned_;
  bool ownsText_ = false;
};

/// `bytes` decoded strictly in `encoding`, or nothing when they are not text in it: UTF-8
/// refuses ill-formed sequences; the 16-bit encodings refuse odd lengths and unpaired
/// surrogates; UTF-32 refuses lengths not divisible by four, values past U+10FFFF and
/// surrogates; the two 8-bit encodings refuse only bytes they leave undefined. A leading
/// byte-order mark is dropped. May throw std::bad_alloc.
std::optional<DecodedText> decodeText(std::string_view bytes, TextEncoding encoding);

/// The first candidate of kCandidateEncodings that accepts `bytes`, or nothing. An empty
/// file is empty UTF-8 text. May throw std::bad_alloc.
std::optional<DecodedText> detectTextEncoding(std::string_view bytes);

}  // namespace lumenscribe
