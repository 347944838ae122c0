// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// health_check FILE: runs the health assessment once, as the driver does (content detected,
// the check chosen by it, decoders in their worker), and prints the verdict and the check's
// row. Nothing else of an inspection runs, so only the check itself is timed.
#include <cstdio>

#include "health/health_assessment.h"
#include "identity/content_detection.h"
#include "platform/decoder_client.h"
#include "platform/opened_item.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: health_check FILE\n");
    return 2;
  }
  auto item = lumenscribe::platform::openItem(argv[1]);
  if (!item) {
    std::fprintf(stderr, "health_check: %s: %s\n", argv[1], item.error().message().c_str());
    return 1;
  }
  lumenscribe::platform::DecoderClient decoder;
  lumenscribe::Accumulators accumulators;
  lumenscribe::assessFileHealth(*item, lumenscribe::detectContentSignature(*item), decoder,
                                accumulators);
  const auto& rows = accumulators.sections.at(0).rows;
  std::printf("%s: %s (%s: %s)\n", argv[1], rows.at(0).value.c_str(), rows.back().label.c_str(),
              rows.back().value.c_str());
  return 0;
}
