// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/image_decoder.h"
#include "platform/pdf_document.h"

namespace lumenscribe::platform {

// The decoders (libvips, poppler, and their hundred dependencies) live in a module of
// their own, loaded the first time one is needed: linking them into the programs would
// cost every start, even a look at a text file, some 80 ms of library loading.
//
// The module exports one table; the engine's functions of the same names forward to it.
struct CodecTable {
  int version;
  decltype(&platform::decodeImageStatus) decodeImageStatus;
  decltype(&platform::initialiseVips) initialiseVips;
  decltype(&platform::openPdf) openPdf;
  decltype(&platform::renderPdfFirstPage) renderPdfFirstPage;
};

// Bumped whenever the table changes, so that a stale module is refused, not misused.
inline constexpr int kCodecTableVersion = 1;

inline constexpr const char* kCodecModuleName = "lumenscribe-codecs.so";
inline constexpr const char* kCodecTableSymbol = "lumenscribeCodecTable";

/// The module's table, loaded once; nothing when the module cannot be found or loaded.
const CodecTable* codecTable();

}  // namespace lumenscribe::platform
