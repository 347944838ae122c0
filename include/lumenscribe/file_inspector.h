// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>

#include "lumenscribe/expected.h"
#include "lumenscribe/inspection_control.h"
#include "lumenscribe/result.h"

namespace lumenscribe {

namespace platform {
class DecoderClient;
class OpenedItem;
}  // namespace platform

/// The inspection engine. It keeps no state of an inspection between calls; one inspector
/// may serve any number of threads.
///
///     lumenscribe::FileInspector inspector;
///     auto result = inspector.inspect("/home/me/Pictures/IMG_0042.jpg");
///     if (!result) std::cerr << result.error().message() << '\n';
///
/// The item is opened once and only read, never written; special files (FIFOs, sockets,
/// devices) are refused from their status alone, before anything opens them. Images and
/// PDFs are decoded in a confined worker process that the inspector starts on first need
/// and keeps for the next inspection (copies of an inspector share it).
class FileInspector {
 public:
  FileInspector();
  /// An inspector that decodes with `decoder` (shared with whoever else holds it).
  explicit FileInspector(std::shared_ptr<platform::DecoderClient> decoder);

  /// Fails with the system's error when the item cannot be stat'ed (the message is the
  /// strerror text), or with FileInspectionError::unsupportedFile for anything that is
  /// neither a regular file nor a directory. An analyzer's failure never fails it.
  Expected<LumenscribeResult> inspect(const std::filesystem::path& url) const;

  /// Inspects an item opened by platform::openItem, for a caller that keeps it (the window
  /// shows a preview of the very bytes it inspected). Never fails. `control` reports the
  /// progress of a folder walk or ZIP listing and can end it early.
  LumenscribeResult inspect(const platform::OpenedItem& item,
                            const InspectionControl& control = {}) const;

  /// The decoder worker's client, for previews of the inspected item.
  const std::shared_ptr<platform::DecoderClient>& decoder() const { return decoder_; }

 private:
  std::shared_ptr<platform::DecoderClient> decoder_;
};

}  // namespace lumenscribe
