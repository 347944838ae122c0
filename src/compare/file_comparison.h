// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <variant>
#include <vector>

#include "compare/line_differences.h"
#include "core/content_type.h"

namespace lumenscribe {

namespace platform {
class DecoderClient;
class OpenedItem;
}  // namespace platform

/// What comparing two files found. A plain value: the window shows it in its sheet, the
/// command line prints it or writes it as JSON.
struct FileComparison {
  std::filesystem::path firstURL;
  std::filesystem::path secondURL;
  /// Sizes in bytes, 0 when the file system gives none.
  std::int64_t firstSize = 0;
  std::int64_t secondSize = 0;
  /// The content type's description, else its identifier, else "Unknown".
  std::string firstType;
  std::string secondType;
  /// SHA-256 of each file's bytes, 64 lower-case hexadecimal digits.
  std::string firstHash;
  std::string secondHash;
  /// Absent unless both files are text and both decode.
  std::optional<std::vector<TextDifference>> textDifferences;
  /// Present exactly when textDifferences is.
  std::optional<std::int64_t> totalChangedLines;
  /// Absent unless both files are images and both decode.
  std::optional<bool> pixelMatch;
  /// "640×480", or "640×480 vs 320×240"; present exactly when pixelMatch is.
  std::optional<std::string> pixelDimensions;

  /// Equal sizes and equal fingerprints: byte for byte the same.
  bool identical() const { return firstSize == secondSize && firstHash == secondHash; }

  friend bool operator==(const FileComparison&, const FileComparison&) = default;
};

/// Why a comparison failed: which file, and the system's error (or ComparisonError).
struct ComparisonFailure {
  std::filesystem::path url;
  std::error_code error;

  /// "notes.txt: No such file or directory".
  std::string description() const;
};

/// "Lumenscribe could not compare these files: {error}".
std::string comparisonFailureMessage(const ComparisonFailure& failure);

enum class ComparisonError {
  notAFile = 1,  // a FIFO, a socket or a device: never opened
};
const std::error_category& comparisonCategory();
std::error_code make_error_code(ComparisonError error);

/// The 43 lower-case file-name extensions that make a file count as text for the comparison.
inline constexpr std::array<std::string_view, 43> comparisonTextExtensions = {
    "txt", "text", "md",   "markdown", "html", "htm", "css",   "js",   "mjs", "cjs", "ts",
    "tsx", "jsx",  "json", "xml",      "yaml", "yml", "swift", "m",    "mm",  "h",   "hpp",
    "c",   "cc",   "cpp",  "py",       "rb",   "pl",  "php",   "java", "kt",  "kts", "rs",
    "go",  "sql",  "sh",   "bash",     "zsh",  "csv", "log",   "ini",  "cfg", "conf"};

/// A file counts as text when its content type is text or source code, or when its
/// lower-cased extension is one of comparisonTextExtensions.
bool countsAsComparisonText(const std::filesystem::path& url,
                            const std::optional<ContentType>& type);

/// Compares two files: sizes, types and SHA-256 fingerprints (the two computed at once, one
/// thread each), then, for two text files, their lines and, for two images, their pixels.
/// Blocks until done; call it from a worker thread. Fails when either file cannot be opened
/// or read in full, or is not a regular file (a folder: EISDIR; a FIFO, socket or device,
/// which is never opened: ComparisonError::notAFile). The text and pixel steps never fail
/// it: they leave their fields absent.
std::variant<FileComparison, ComparisonFailure> compareFiles(const std::filesystem::path& first,
                                                             const std::filesystem::path& second,
                                                             platform::DecoderClient& decoder);

/// The differing lines of two text files read whole and decoded with the text analysis'
/// candidate encodings; nothing unless both count as text and both can be read and decoded.
std::optional<LineDifferences> lineDifferences(const platform::OpenedItem& first,
                                               const platform::OpenedItem& second);

/// Pixel digest of image 0 and its size, as pixelFingerprint gives them.
struct PixelDigest {
  std::string hexDigest;
  std::int32_t width = 0;
  std::int32_t height = 0;
};

/// SHA-256 of image 0's pixels drawn in 8-bit sRGB with premultiplied alpha, computed by the
/// decoder worker; nothing when the item holds no image that decodes.
std::optional<PixelDigest> pixelFingerprint(const platform::OpenedItem& item,
                                            platform::DecoderClient& decoder);

struct PixelComparison {
  bool match = false;
  std::string dimensions;
};

/// Whether two images decode to the same pixels ("640×480"), or their sizes when they differ
/// ("640×480 vs 320×240", never a match). Nothing unless both content types are images and
/// both decode. The two are decoded at once, each by a worker of its own.
std::optional<PixelComparison> comparePixels(const platform::OpenedItem& first,
                                             const platform::OpenedItem& second,
                                             platform::DecoderClient& decoder);

}  // namespace lumenscribe

template <>
struct std::is_error_code_enum<lumenscribe::ComparisonError> : std::true_type {};
