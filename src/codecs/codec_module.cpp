// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/codec_table.h"

namespace lumenscribe::platform {
namespace {

constexpr CodecTable kTable = {
    kCodecTableVersion, &decodeImageStatus, &initialiseVips, &openPdf, &renderPdfFirstPage,
};

}  // namespace
}  // namespace lumenscribe::platform

// The module's only exported symbol; everything else is hidden.
extern "C" __attribute__((visibility("default"))) const lumenscribe::platform::CodecTable*
lumenscribeCodecTable() {
  return &lumenscribe::platform::kTable;
}
