// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "cleancopy/clean_copy.h"

#include <sys/stat.h>

#include <array>
#include <exception>
#include <future>
#include <system_error>

#include "cleancopy/copy_check.h"
#include "cleancopy/pending_file.h"
#include "core/path_text.h"
#include "platform/decoder_client.h"
#include "platform/mime_database.h"
#include "platform/opened_item.h"

namespace lumenscribe {

namespace {

using platform::decoder::CleanCopyOutcome;
using platform::decoder::CleanCopyRequest;
using platform::decoder::CleanCopySource;
using platform::decoder::CleanCopyStatus;
using platform::decoder::ImageFormat;
using platform::decoder::PixelFingerprint;
namespace text = clean_copy_text;

// The failure texts of one kind of copy: when the source does not do, when the destination
// cannot be made, when writing it fails.
struct FailureTexts {
  std::string_view source;
  std::string_view destination;
  std::string_view writing;
};

constexpr FailureTexts kPixelSafeTexts = {text::kPrepareFailed, text::kDestinationFailed,
                                          text::kDestinationFailed};
constexpr FailureTexts kStandardTexts = {
    text::kStandardDecodeFailed, text::kStandardDestinationFailed, text::kStandardFinishFailed};

CleanCopyResult failed(std::string_view message, std::string reason = {}) {
  CleanCopyResult result;
  result.message = message;
  result.reason = std::move(reason);
  return result;
}

CleanCopyResult question() {
  CleanCopyResult result;
  result.state = CleanCopyState::pixelSafeRefused;
  result.message = text::kQuestionMessage;
  return result;
}

std::optional<CleanCopySource> sourceOf(const platform::OpenedItem& item,
                                        platform::DecoderClient& decoder) {
  if (!item.isReadable() || !item.facts().isRegularFile || item.size() <= 0) return std::nullopt;
  const auto reply = decoder.cleanCopySource(platform::requestInput(item));
  if (!reply || !*reply) return std::nullopt;
  return **reply;
}

// The destination names the very file being copied (or a link to it): replacing it would
// lose the original.
bool isTheSource(const platform::OpenedItem& item, const std::filesystem::path& destination) {
  struct stat source {};
  struct stat target {};
  return ::fstat(item.descriptor(), &source) == 0 && ::stat(destination.c_str(), &target) == 0 &&
         source.st_dev == target.st_dev && source.st_ino == target.st_ino;
}

template <class Work>
auto onItsOwnThread(Work work) {
  try {
    return std::async(std::launch::async, std::move(work));
  } catch (const std::system_error&) {
    return std::async(std::launch::deferred, std::move(work));
  }
}

std::optional<PixelFingerprint> fingerprintOf(platform::RequestInput input,
                                              platform::DecoderClient& decoder) {
  auto reply = decoder.pixelFingerprint(input);
  if (!reply || !*reply) return std::nullopt;
  return **reply;
}

std::int64_t dimension(const MetadataValue::Map& properties, const char* key) {
  const auto found = properties.find(key);
  const std::int64_t* value =
      found != properties.end() ? found->second.get<std::int64_t>() : nullptr;
  return value != nullptr ? *value : -1;
}

// Reads the copy back as the inspection would read it: its properties, and for a pixel-safe
// copy its pixels beside the source's (the two decoded at once, each by a worker).
CleanCopyCheck checkCopy(platform::RequestInput source, std::int32_t width, std::int32_t height,
                         platform::RequestInput copy, CleanCopyKind kind,
                         platform::DecoderClient& decoder) {
  CleanCopyCheck check;
  std::future<std::optional<PixelFingerprint>> sourcePixels;
  if (kind == CleanCopyKind::pixelSafe) {
    sourcePixels = onItsOwnThread([&decoder, source] { return fingerprintOf(source, decoder); });
  }
  if (const auto properties = decoder.imageProperties(copy); properties && *properties) {
    const auto& map = (*properties)->properties;
    check.personalProperties = personalProperties(map);
    check.sameSize = (*properties)->imageCount == 1 && dimension(map, "PixelWidth") == width &&
                     dimension(map, "PixelHeight") == height;
  }
  if (kind == CleanCopyKind::pixelSafe) {
    const auto copyPixels = fingerprintOf(copy, decoder);
    const auto originalPixels = sourcePixels.get();
    check.pixelsCompared = true;
    check.pixelsMatch = copyPixels && originalPixels && *copyPixels == *originalPixels;
  }
  return check;
}

std::string checkReason(const CleanCopyCheck& check) {
  if (!check.sameSize) return "The copy did not read back as the same picture.";
  if (check.pixelsCompared && !check.pixelsMatch) {
    return "The copy's pixels differ from the original's.";
  }
  return "The copy still holds camera, location, creator or software details: " +
         propertyListText(check.personalProperties) + ".";
}

CleanCopyResult makeCopy(const platform::OpenedItem& item, const std::filesystem::path& destination,
                         CleanCopyKind kind, platform::DecoderClient& decoder) {
  const FailureTexts& texts = kind == CleanCopyKind::pixelSafe ? kPixelSafeTexts : kStandardTexts;
  const auto facts = sourceOf(item, decoder);
  if (!facts || facts->imageCount != 1) return failed(texts.source);
  if (facts->format == ImageFormat::other) return failed(texts.destination);
  if (isTheSource(item, destination)) {
    return failed(texts.destination, "The destination is the image itself.");
  }

  auto pending = PendingFile::create(destination);
  if (!pending) return failed(texts.destination, pending.error().message());

  CleanCopyRequest request;
  request.kind = kind;
  if (kind == CleanCopyKind::standard) {
    request.quality = standardCopyQuality(typeIdentifierOf(facts->format)).value_or(0);
  }
  const auto outcome = decoder.cleanCopy(
      platform::requestInput(item), request,
      [&pending](std::span<const std::byte> chunk) { return pending->append(chunk); });
  if (pending->error()) return failed(texts.writing, pending->error().message());
  if (!outcome) {
    // The worker stopped on this image: no pixel-safe copy of it, or no decoding of it.
    return kind == CleanCopyKind::pixelSafe ? question() : failed(texts.source);
  }
  switch (outcome->status) {
    case CleanCopyStatus::written: break;
    case CleanCopyStatus::refused: return question();
    case CleanCopyStatus::notOneImage:
    case CleanCopyStatus::undecodable: return failed(texts.source);
    case CleanCopyStatus::unwritable: return failed(texts.destination);
    case CleanCopyStatus::encodeFailed:
      return kind == CleanCopyKind::pixelSafe ? question() : failed(texts.writing);
  }

  CleanCopyResult result;
  const auto reader = pending->openForReading();
  if (!reader) return failed(texts.writing, reader.error().message());
  result.check = checkCopy(platform::requestInput(item), facts->width, facts->height,
                           {reader->get(), pending->size()}, kind, decoder);
  if (!result.check->passed()) {
    // `pending` goes without ever having had a name.
    result.message = text::kCheckFailed;
    result.reason = checkReason(*result.check);
    return result;
  }
  if (const auto error = pending->commit()) {
    result.message = texts.writing;
    result.reason = error.message();
    return result;
  }
  result.state = CleanCopyState::saved;
  return result;
}

}  // namespace

std::string_view typeIdentifierOf(ImageFormat format) {
  switch (format) {
    case ImageFormat::jpeg: return "image/jpeg";
    case ImageFormat::png: return "image/png";
    case ImageFormat::webp: return "image/webp";
    case ImageFormat::tiff: return "image/tiff";
    case ImageFormat::gif: return "image/gif";
    case ImageFormat::heic: return "image/heic";
    case ImageFormat::avif: return "image/avif";
    case ImageFormat::other: return "";
  }
  return "";
}

std::optional<int> standardCopyQuality(std::string_view typeIdentifier) {
  const std::string lower = asciiLower(typeIdentifier);
  for (const std::string_view lossy : {"jpeg", "jpg", "heic", "heif", "webp", "avif"}) {
    if (lower.find(lossy) != std::string::npos) return 100;
  }
  return std::nullopt;
}

std::string suggestedCleanCopyName(const std::filesystem::path& source,
                                   std::string_view typeIdentifier) {
  const std::string name = lastPathComponent(source);
  std::string extension = pathExtension(source);
  std::string base = extension.empty() ? name : name.substr(0, name.size() - extension.size() - 1);
  if (base.empty()) base = "Clean-Image";
  if (extension.empty()) {
    extension = platform::preferredExtension(typeIdentifier).value_or("image");
  }
  return base + "-clean." + extension;
}

CleanCopyCheck checkCleanCopy(const platform::OpenedItem& source, const platform::OpenedItem& copy,
                              CleanCopyKind kind, platform::DecoderClient& decoder) {
  const auto facts = sourceOf(source, decoder);
  if (!facts || !copy.isReadable()) return {};
  return checkCopy(platform::requestInput(source), facts->width, facts->height,
                   platform::requestInput(copy), kind, decoder);
}

bool canMakeCleanCopy(const platform::OpenedItem& item, platform::DecoderClient& decoder) {
  if (item.facts().isDirectory || !item.contentType() ||
      !item.contentType()->conformsTo(AbstractType::image)) {
    return false;
  }
  const auto facts = sourceOf(item, decoder);
  return facts && facts->imageCount == 1 && facts->format != ImageFormat::other;
}

bool canMakeCleanCopy(const std::filesystem::path& url, platform::DecoderClient& decoder) {
  const auto item = platform::openItem(url);
  return item && canMakeCleanCopy(*item, decoder);
}

std::optional<CleanCopyPlan> prepareCleanCopy(const std::filesystem::path& source,
                                              platform::DecoderClient& decoder) {
  const auto item = platform::openItem(source);
  if (!item) return std::nullopt;
  const auto facts = sourceOf(*item, decoder);
  if (!facts || facts->imageCount != 1) return std::nullopt;
  CleanCopyPlan plan;
  plan.typeIdentifier = typeIdentifierOf(facts->format);
  plan.suggestedName = suggestedCleanCopyName(source, plan.typeIdentifier);
  return plan;
}

CleanCopyResult makeCleanCopy(const std::filesystem::path& source,
                              const std::filesystem::path& destination, CleanCopyKind kind,
                              platform::DecoderClient& decoder) {
  const FailureTexts& texts = kind == CleanCopyKind::pixelSafe ? kPixelSafeTexts : kStandardTexts;
  const auto item = platform::openItem(source);
  if (!item) return failed(texts.source, item.error().message());
  try {
    return makeCopy(*item, destination, kind, decoder);
  } catch (const std::exception&) {
    // Out of memory or threads on our side; whatever was written goes with `pending`.
    return failed(texts.writing);
  }
}

}  // namespace lumenscribe
