// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// container_inventory folder|zip|open PATH: opens PATH as the driver does and runs the folder
// or ZIP inventory on it once ("open" only opens it, to time the program's own start-up),
// then prints the counts.
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "analyzers/folder_inventory.h"
#include "analyzers/zip_inventory.h"
#include "platform/opened_item.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: container_inventory folder|zip|open PATH\n");
    return 2;
  }
  auto item = lumenscribe::platform::openItem(argv[2]);
  if (!item) {
    std::fprintf(stderr, "container_inventory: %s: %s\n", argv[2], item.error().message().c_str());
    return 1;
  }
  lumenscribe::Accumulators accumulators;
  if (std::strcmp(argv[1], "folder") == 0) {
    lumenscribe::inventoryFolder(*item, accumulators);
  } else if (std::strcmp(argv[1], "zip") == 0) {
    lumenscribe::inventoryZipArchive(*item, accumulators);
  } else {
    return 0;
  }
  const auto& raw = accumulators.rawMetadata;
  const auto value = [&](const char* key) {
    const auto found = raw.find(key);
    return found == raw.end() ? std::string("-") : found->second;
  };
  std::printf("%s: %s files, %s folders, %s bytes%s%s\n", argv[2], value("Container Files").c_str(),
              value("Container Folders").c_str(), value("Container Contents Bytes").c_str(),
              raw.contains("ZIP Inspection Error") ? "; " : "",
              raw.contains("ZIP Inspection Error") ? value("ZIP Inspection Error").c_str() : "");
  return 0;
}
