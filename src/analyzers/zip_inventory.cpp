// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/zip_inventory.h"

#include <string>

#include "analyzers/container_summary.h"
#include "analyzers/inventory_progress.h"
#include "analyzers/zip_listing.h"
#include "platform/child_process.h"

namespace lumenscribe {

namespace {

constexpr const char* kErrorKey = "ZIP Inspection Error";
constexpr const char* kUnreadable = "The ZIP inventory could not be read.";

}  // namespace

void inventoryZipArchive(const platform::OpenedItem& item, Accumulators& accumulators,
                         const InspectionControl& control, const std::filesystem::path& unzipTool) {
  // unzip would fail on a file we could not open ourselves, and it gets no path to open.
  if (!item.isReadable()) {
    accumulators.setRaw(kErrorKey, kUnreadable);
    return;
  }
  // unzip reads the archive we opened, as its descriptor 3: not the path, which may name
  // another file by now and whose *, ? and [ unzip would read as a pattern.
  constexpr int kArchive = 3;
  const platform::InheritedDescriptor archive{item.descriptor(), kArchive};
  ZipListingReader reader;
  InventoryProgress progress(control);
  std::int64_t counted = 0;
  const auto read = [&](std::string_view piece) {
    reader.feed(piece);
    for (; counted < reader.entryCount(); ++counted) progress.step();
  };
  const auto run = platform::streamChildProcess(
      unzipTool, {"-l", "/dev/fd/" + std::to_string(kArchive)}, platform::ChildOutput::stdoutOnly,
      read, std::span(&archive, 1), control.stopToken);
  if (!run) {
    accumulators.setRaw(kErrorKey,
                        "Could not start " + unzipTool.string() + ": " + run.error().message());
    return;
  }
  if (run->stopped) return;
  reader.finish();
  // unzip warns about an archive without entries (status 1) after listing all of it, which
  // is nothing: that archive is an empty inventory, not an unreadable one.
  const bool listed =
      run->exitStatus == 0 || (run->exitStatus == 1 && !reader.listedMoreThanArchiveLine());
  if (!listed || !reader.isValidUtf8()) {
    accumulators.setRaw(kErrorKey, kUnreadable);
    return;
  }
  publishContainerSummary(reader.summary(), "ZIP Archive", accumulators);
}

}  // namespace lumenscribe
