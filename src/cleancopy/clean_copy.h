// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/decoder_protocol.h"

namespace lumenscribe {

namespace platform {
class DecoderClient;
class OpenedItem;
}  // namespace platform

using platform::decoder::CleanCopyKind;

/// The words of the clean copy, for the window and the command line alike.
namespace clean_copy_text {

inline constexpr std::string_view kButton = "Create Clean Copy";
inline constexpr std::string_view kButtonIcon = "sparkles";
inline constexpr std::string_view kButtonHelp =
    "Save a copy of this image with privacy metadata removed";
inline constexpr std::string_view kPanelTitle = "Create Clean Copy";
inline constexpr std::string_view kPanelPrompt = "Save Clean Copy";

inline constexpr std::string_view kPrepareFailed =
    "Lumenscribe could not prepare a clean copy of this image.";
inline constexpr std::string_view kDestinationFailed =
    "Lumenscribe could not create the clean-copy destination.";
inline constexpr std::string_view kStandardDecodeFailed =
    "Lumenscribe could not decode this image for a standard clean copy.";
inline constexpr std::string_view kStandardDestinationFailed =
    "Lumenscribe could not create the standard clean-copy destination.";
inline constexpr std::string_view kStandardFinishFailed =
    "Lumenscribe could not finish writing the standard clean copy.";
/// Said when the copy written does not pass its check; it is deleted.
inline constexpr std::string_view kCheckFailed =
    "Lumenscribe did not keep the clean copy, because checking it found a problem.";

/// The question asked when no pixel-safe copy can be made.
inline constexpr std::string_view kQuestionTitle = "Pixel-safe copy unavailable";
inline constexpr std::string_view kQuestionMessage =
    "Lumenscribe could not make a pixel-safe copy for this image. A standard clean copy will "
    "still remove the metadata, but JPEG or HEIC files may be re-encoded.";
inline constexpr std::string_view kQuestionConfirm = "Make Standard Clean Copy";
inline constexpr std::string_view kQuestionCancel = "Cancel";

}  // namespace clean_copy_text

/// True when a clean copy can be offered for the item: a regular file whose content type is
/// an image, holding exactly one picture (not an animation, not several pages) in a format
/// this system can write (JPEG, PNG, WebP, TIFF, GIF, HEIC, AVIF). Blocks on the decoder.
bool canMakeCleanCopy(const platform::OpenedItem& item, platform::DecoderClient& decoder);
bool canMakeCleanCopy(const std::filesystem::path& url, platform::DecoderClient& decoder);

/// What a clean copy of an image starts from.
struct CleanCopyPlan {
  /// The picture's type as its loader found it: "image/jpeg", "image/heic"...; empty for a
  /// format this system cannot write.
  std::string typeIdentifier;
  /// "{base}-clean.{extension}" (see suggestedCleanCopyName).
  std::string suggestedName;
};

/// The plan for a clean copy of `source`; nothing when it cannot be opened, holds not
/// exactly one picture, or its format is unknown (clean_copy_text::kPrepareFailed).
std::optional<CleanCopyPlan> prepareCleanCopy(const std::filesystem::path& source,
                                              platform::DecoderClient& decoder);

/// "{base}-clean.{extension}": the name without its extension ("Clean-Image" when that is
/// empty), and the extension as written ("photo.JPG" gives "photo-clean.JPG"), or for a name
/// without one the type's preferred extension ("scan" of image/png gives "scan-clean.png"),
/// or "image".
std::string suggestedCleanCopyName(const std::filesystem::path& source,
                                   std::string_view typeIdentifier);

/// The encoder quality of a standard copy: the highest (100) where the lower-cased type
/// identifier contains "jpeg", "jpg", "heic" or "heif", and for the other lossy formats
/// (WebP, AVIF), whose encoders' defaults would lose detail; none for lossless formats.
std::optional<int> standardCopyQuality(std::string_view typeIdentifier);

/// What the check of a written copy found.
struct CleanCopyCheck {
  /// Pixel-safe copies: both decoded to the same pixels (SHA-256 of the decoded pixels).
  bool pixelsCompared = false;
  bool pixelsMatch = false;
  /// Camera, location, creator or software properties found in the copy (empty: none).
  std::vector<std::string> personalProperties;
  /// The copy reads back as a picture of the source's width and height.
  bool sameSize = false;

  bool passed() const {
    return sameSize && personalProperties.empty() && (!pixelsCompared || pixelsMatch);
  }
};

/// Reads `copy` back as an inspection would and checks it against `source`: the same width
/// and height, no camera, location, creator or software property (personalProperties), and
/// for a pixel-safe copy the same pixels (the two fingerprints taken at once). makeCleanCopy
/// runs it on every copy before keeping it.
CleanCopyCheck checkCleanCopy(const platform::OpenedItem& source, const platform::OpenedItem& copy,
                              CleanCopyKind kind, platform::DecoderClient& decoder);

enum class CleanCopyState {
  saved,             // the copy is at the destination and passed its check
  pixelSafeRefused,  // no pixel-safe copy of this image: ask about a standard one
  failed,            // see `message`
};

struct CleanCopyResult {
  CleanCopyState state = CleanCopyState::failed;
  /// The failure's fixed text (clean_copy_text), or the question's message.
  std::string message;
  /// More about a failure where there is more to say: the system's error ("Permission
  /// denied") or what the check found.
  std::string reason;
  /// What the check found (also for a copy deleted because it failed it).
  std::optional<CleanCopyCheck> check;
};

/// Writes a clean copy of `source` to `destination`, replacing a file there only once the
/// copy is complete and has passed its check; a copy that fails it is deleted. Blocks until
/// done (call it from a worker thread); the source is only read.
///
/// Pixel-safe: the container rewritten without metadata, the compressed image data kept as
/// it is; checked for equal pixels and for no personal property left. Refused for formats
/// and files that cannot be rewritten so (pixelSafeRefused: ask the question). Standard:
/// decoded and encoded again (standardCopyQuality), orientation and colour profile kept;
/// checked for no personal property left.
CleanCopyResult makeCleanCopy(const std::filesystem::path& source,
                              const std::filesystem::path& destination, CleanCopyKind kind,
                              platform::DecoderClient& decoder);

inline CleanCopyResult makePixelSafeCopy(const std::filesystem::path& source,
                                         const std::filesystem::path& destination,
                                         platform::DecoderClient& decoder) {
  return makeCleanCopy(source, destination, CleanCopyKind::pixelSafe, decoder);
}

inline CleanCopyResult makeStandardCleanCopy(const std::filesystem::path& source,
                                             const std::filesystem::path& destination,
                                             platform::DecoderClient& decoder) {
  return makeCleanCopy(source, destination, CleanCopyKind::standard, decoder);
}

/// The MIME type of a format this system writes ("image/jpeg"); empty for `other`.
std::string_view typeIdentifierOf(platform::decoder::ImageFormat format);

}  // namespace lumenscribe
