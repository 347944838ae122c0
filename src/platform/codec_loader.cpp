// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include <dlfcn.h>
#include <unistd.h>

#include <filesystem>
#include <vector>

#include "platform/codec_table.h"

namespace lumenscribe::platform {

namespace {

// Beside the program in a build tree, in the library folder once installed, and where the
// build put it (for test programs that live in a folder of their own).
std::vector<std::filesystem::path> moduleCandidates() {
  std::vector<std::filesystem::path> candidates;
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (!error) {
    const auto folder = program.parent_path();
    candidates.push_back(folder / kCodecModuleName);
    candidates.push_back(folder / LUMENSCRIBE_CODECS_INSTALL_RELATIVE / kCodecModuleName);
  }
  candidates.push_back(std::filesystem::path(LUMENSCRIBE_CODECS_BUILD_DIR) / kCodecModuleName);
  return candidates;
}

const CodecTable* loadTable() {
  for (const auto& candidate : moduleCandidates()) {
    if (::access(candidate.c_str(), R_OK) != 0) continue;
    // Never closed: the decoders keep global state for the life of the process.
    void* module = ::dlopen(candidate.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) continue;
    using TableFunction = const CodecTable* (*)();
    auto function = reinterpret_cast<TableFunction>(::dlsym(module, kCodecTableSymbol));
    const CodecTable* table = function != nullptr ? function() : nullptr;
    if (table != nullptr && table->version == kCodecTableVersion) return table;
  }
  return nullptr;
}

}  // namespace

const CodecTable* codecTable() {
  static const CodecTable* const table = loadTable();
  return table;
}

// Without the module there is nothing to decode with: an image then cannot be verified,
// which says nothing about damage, and a PDF reads as one that did not open.
ImageDecodeStatus decodeImageStatus(const std::filesystem::path& path) {
  const CodecTable* table = codecTable();
  return table ? table->decodeImageStatus(path) : ImageDecodeStatus::unknownImageType;
}

bool initialiseVips() {
  const CodecTable* table = codecTable();
  return table && table->initialiseVips();
}

std::optional<PdfOpenFacts> openPdf(const std::filesystem::path& path) {
  const CodecTable* table = codecTable();
  return table ? table->openPdf(path) : std::nullopt;
}

std::optional<RgbaImage> renderPdfFirstPage(const std::filesystem::path& path, int maxWidth,
                                            int maxHeight) {
  const CodecTable* table = codecTable();
  return table ? table->renderPdfFirstPage(path, maxWidth, maxHeight) : std::nullopt;
}

}  // namespace lumenscribe::platform
