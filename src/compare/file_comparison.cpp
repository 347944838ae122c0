// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "compare/file_comparison.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <future>
#include <system_error>

#include "analyzers/text_encoding.h"
#include "core/path_text.h"
#include "identity/identity_integrity.h"
#include "platform/decoder_client.h"
#include "platform/item_content.h"
#include "platform/opened_item.h"

namespace lumenscribe {

namespace {

class ComparisonCategory final : public std::error_category {
 public:
  const char* name() const noexcept override { return "lumenscribe-comparison"; }
  std::string message(int value) const override {
    switch (static_cast<ComparisonError>(value)) {
      case ComparisonError::notAFile: return "Not a regular file";
    }
    return "Unknown comparison error";
  }
};

// The file at `url` opened once, as an inspection opens it, or why not.
std::variant<platform::OpenedItem, ComparisonFailure> openFile(const std::filesystem::path& url) {
  auto item = platform::openItem(url);
  if (!item) {
    const bool special = item.error() == make_error_code(FileInspectionError::unsupportedFile);
    return ComparisonFailure{url,
                             special ? make_error_code(ComparisonError::notAFile) : item.error()};
  }
  if (item->facts().isDirectory) {
    return ComparisonFailure{url, std::make_error_code(std::errc::is_a_directory)};
  }
  if (!item->isReadable()) {
    // The open failed a moment ago; asking again tells why (permission, mostly).
    errno = 0;
    const platform::UniqueFd again = platform::openForReading(url);
    const int reason = !again && errno != 0 ? errno : EACCES;
    return ComparisonFailure{url, std::error_code(reason, std::system_category())};
  }
  return std::move(item).value();
}

std::string typeText(const std::optional<ContentType>& type) {
  return type ? type->describe() : "Unknown";
}

std::optional<std::string> fingerprint(const platform::OpenedItem& item) {
  try {
    return fingerprintOf(item.descriptor(), item.size());
  } catch (const std::exception&) {
    return std::nullopt;  // no memory for the read buffer
  }
}

// Runs `work` on a thread of its own, or later on the caller's when no thread can be had.
template <class Work>
auto onItsOwnThread(Work work) {
  try {
    return std::async(std::launch::async, std::move(work));
  } catch (const std::system_error&) {
    return std::async(std::launch::deferred, std::move(work));
  }
}

std::string dimensionText(const PixelDigest& pixels) {
  return std::to_string(pixels.width) + "×" + std::to_string(pixels.height);
}

}  // namespace

const std::error_category& comparisonCategory() {
  static const ComparisonCategory category;
  return category;
}

std::error_code make_error_code(ComparisonError error) {
  return {static_cast<int>(error), comparisonCategory()};
}

std::string ComparisonFailure::description() const {
  return validUtf8(lastPathComponent(url)) + ": " + error.message();
}

std::string comparisonFailureMessage(const ComparisonFailure& failure) {
  return "Lumenscribe could not compare these files: " + failure.description();
}

bool countsAsComparisonText(const std::filesystem::path& url,
                            const std::optional<ContentType>& type) {
  if (type &&
      (type->conformsTo(AbstractType::text) || type->conformsTo(AbstractType::sourceCode))) {
    return true;
  }
  const std::string extension = asciiLower(pathExtension(url));
  return std::find(comparisonTextExtensions.begin(), comparisonTextExtensions.end(), extension) !=
         comparisonTextExtensions.end();
}

std::optional<LineDifferences> lineDifferences(const platform::OpenedItem& first,
                                               const platform::OpenedItem& second) {
  if (!countsAsComparisonText(first.url(), first.contentType()) ||
      !countsAsComparisonText(second.url(), second.contentType())) {
    return std::nullopt;
  }
  try {
    const auto firstBytes = platform::ItemContent::read(first.descriptor(), first.size());
    const auto secondBytes = platform::ItemContent::read(second.descriptor(), second.size());
    if (!firstBytes || !secondBytes) return std::nullopt;
    const auto firstText = detectTextEncoding(firstBytes->text());
    const auto secondText = detectTextEncoding(secondBytes->text());
    if (!firstText || !secondText) return std::nullopt;
    return compareLines(firstText->text(), secondText->text());
  } catch (const std::exception&) {
    return std::nullopt;  // out of memory for the texts: no text comparison
  }
}

std::optional<PixelDigest> pixelFingerprint(const platform::OpenedItem& item,
                                            platform::DecoderClient& decoder) {
  if (!item.isReadable()) return std::nullopt;
  const auto reply = decoder.pixelFingerprint(platform::requestInput(item));
  if (!reply || !*reply) return std::nullopt;
  const auto& pixels = **reply;
  return PixelDigest{hexDigest(pixels.digest), pixels.width, pixels.height};
}

std::optional<PixelComparison> comparePixels(const platform::OpenedItem& first,
                                             const platform::OpenedItem& second,
                                             platform::DecoderClient& decoder) {
  const auto isImage = [](const platform::OpenedItem& item) {
    return item.contentType() && item.contentType()->conformsTo(AbstractType::image);
  };
  if (!isImage(first) || !isImage(second)) return std::nullopt;
  auto secondDigest = onItsOwnThread([&] { return pixelFingerprint(second, decoder); });
  const auto firstPixels = pixelFingerprint(first, decoder);
  const auto secondPixels = secondDigest.get();
  if (!firstPixels || !secondPixels) return std::nullopt;
  if (firstPixels->width == secondPixels->width && firstPixels->height == secondPixels->height) {
    return PixelComparison{firstPixels->hexDigest == secondPixels->hexDigest,
                           dimensionText(*firstPixels)};
  }
  return PixelComparison{false,
                         dimensionText(*firstPixels) + " vs " + dimensionText(*secondPixels)};
}

std::variant<FileComparison, ComparisonFailure> compareFiles(const std::filesystem::path& first,
                                                             const std::filesystem::path& second,
                                                             platform::DecoderClient& decoder) {
  auto firstOpened = openFile(first);
  if (auto* failure = std::get_if<ComparisonFailure>(&firstOpened)) return *failure;
  auto secondOpened = openFile(second);
  if (auto* failure = std::get_if<ComparisonFailure>(&secondOpened)) return *failure;
  const platform::OpenedItem& a = std::get<platform::OpenedItem>(firstOpened);
  const platform::OpenedItem& b = std::get<platform::OpenedItem>(secondOpened);

  // One thread per file: each fingerprint reads its own file at the disk's or the hash's
  // pace, whichever is slower.
  auto secondHash = onItsOwnThread([&b] { return fingerprint(b); });
  const auto firstHash = fingerprint(a);
  const auto secondHashValue = secondHash.get();
  const auto readFailure = [](const std::filesystem::path& url) {
    return ComparisonFailure{url, std::make_error_code(std::errc::io_error)};
  };
  if (!firstHash) return readFailure(first);
  if (!secondHashValue) return readFailure(second);

  FileComparison comparison;
  comparison.firstURL = first;
  comparison.secondURL = second;
  comparison.firstSize = a.size();
  comparison.secondSize = b.size();
  comparison.firstType = typeText(a.contentType());
  comparison.secondType = typeText(b.contentType());
  comparison.firstHash = *firstHash;
  comparison.secondHash = *secondHashValue;
  if (auto lines = lineDifferences(a, b)) {
    comparison.textDifferences = std::move(lines->differences);
    comparison.totalChangedLines = lines->totalChangedLines;
  }
  if (auto pixels = comparePixels(a, b, decoder)) {
    comparison.pixelMatch = pixels->match;
    comparison.pixelDimensions = std::move(pixels->dimensions);
  }
  return comparison;
}

}  // namespace lumenscribe
