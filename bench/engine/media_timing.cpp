// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// media_timing FILE [ROUNDS]: the video analysis as an inspection runs it (one probe in the
// decoder worker, the rows made from its description), on a file opened as the driver opens
// it, and prints the rows.
//  - without ROUNDS: once, worker start included, so that a process can be timed against
//    ffprobe's;
//  - with ROUNDS: that many times on a warm worker, and the median time of one.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "analyzers/media_tags.h"
#include "analyzers/video_analysis.h"

namespace {

using Clock = std::chrono::steady_clock;

bool analyse(const lumenscribe::platform::OpenedItem& item,
             lumenscribe::platform::DecoderClient& decoder, bool print) {
  lumenscribe::Accumulators accumulators;
  lumenscribe::analyzeVideo(lumenscribe::probeMedia(item, decoder), accumulators);
  if (print) {
    for (const auto& row : accumulators.sections.at(0).rows) {
      std::printf("%s: %s\n", row.label.c_str(), row.value.c_str());
    }
  }
  return accumulators.sections.at(0).rows.size() > 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 && argc != 3) {
    std::fprintf(stderr, "usage: media_timing FILE [ROUNDS]\n");
    return 2;
  }
  auto item = lumenscribe::platform::openItem(argv[1]);
  if (!item) {
    std::fprintf(stderr, "media_timing: %s: %s\n", argv[1], item.error().message().c_str());
    return 1;
  }
  lumenscribe::platform::DecoderClient decoder;
  if (argc == 2) return analyse(*item, decoder, false) ? 0 : 1;

  decoder.warmUp();
  if (!analyse(*item, decoder, true)) return 1;
  std::vector<double> times;
  for (int i = 0; i < std::max(1, std::atoi(argv[2])); ++i) {
    const auto begin = Clock::now();
    analyse(*item, decoder, false);
    times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
  }
  std::sort(times.begin(), times.end());
  std::printf("video analysis, warm worker: median %.2f ms over %zu\n", times[times.size() / 2],
              times.size());
  return 0;
}
