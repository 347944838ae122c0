// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// warm_inspect FILE...: the whole inspection of each file as the window runs it, with its
// decoder worker already started (the window starts it at launch): the median of 21 runs
// after one to warm the caches, in milliseconds.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "lumenscribe/file_inspector.h"
#include "platform/decoder_client.h"

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: warm_inspect FILE...\n");
    return 2;
  }
  const lumenscribe::FileInspector inspector;
  inspector.decoder()->warmUp();
  for (int i = 1; i < argc; ++i) {
    (void)inspector.inspect(argv[i]);
    std::vector<double> times;
    for (int run = 0; run < 21; ++run) {
      const auto start = std::chrono::steady_clock::now();
      const auto result = inspector.inspect(argv[i]);
      times.push_back(
          std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
              .count());
      if (!result) return 1;
    }
    std::sort(times.begin(), times.end());
    std::printf("%s %.1f\n", argv[i], times[times.size() / 2]);
  }
  return 0;
}
