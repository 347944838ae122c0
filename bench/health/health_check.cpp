// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// health_check MIME-TYPE FILE: runs the health assessment once, as the driver would for a
// file of that content type, and prints the verdict and the check's row. The type is given
// rather than looked up so that only the check itself is timed.
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "health/health_assessment.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: health_check MIME-TYPE FILE\n");
    return 2;
  }
  const std::filesystem::path file = argv[2];
  std::error_code error;
  const auto size = std::filesystem::file_size(file, error);
  if (error) {
    std::fprintf(stderr, "health_check: %s: %s\n", argv[2], error.message().c_str());
    return 1;
  }
  lumenscribe::Accumulators accumulators;
  lumenscribe::assessFileHealth(file, lumenscribe::ContentType(argv[1], std::nullopt),
                                static_cast<std::int64_t>(size), accumulators);
  const auto& rows = accumulators.sections.at(0).rows;
  std::printf("%s: %s (%s)\n", argv[2], rows.at(0).value.c_str(), rows.back().value.c_str());
  return 0;
}
