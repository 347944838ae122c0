// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// health_check FILE: opens the file as the driver does and runs the health assessment once,
// its decoder worker included, then prints the verdict and the check's row.
#include <cstdio>
#include <filesystem>

#include "health/health_assessment.h"

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
  lumenscribe::assessFileHealth(*item, decoder, accumulators);
  const auto& rows = accumulators.sections.at(0).rows;
  std::printf("%s: %s (%s)\n", argv[1], rows.at(0).value.c_str(), rows.back().value.c_str());
  return 0;
}
