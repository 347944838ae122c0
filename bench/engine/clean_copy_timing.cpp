// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// clean_copy_timing IMAGE OUT ROUNDS: on a warm decoder worker, the median time of
//  - the pixel-safe copy itself: the worker's rewrite, its bytes sent back and written to an
//    unnamed file in OUT's folder, which is then renamed to OUT;
//  - the check of the copy (both images decoded and hashed, the copy's metadata read);
//  - makePixelSafeCopy, which does both.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

#include "cleancopy/clean_copy.h"
#include "cleancopy/pending_file.h"
#include "platform/decoder_client.h"
#include "platform/opened_item.h"

namespace {

using Clock = std::chrono::steady_clock;

double medianMilliseconds(int rounds, const std::function<bool()>& work) {
  std::vector<double> times;
  for (int i = 0; i < rounds; ++i) {
    const auto begin = Clock::now();
    if (!work()) {
      std::fprintf(stderr, "clean_copy_timing: a round failed\n");
      std::exit(1);
    }
    times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
  }
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  using namespace lumenscribe;
  if (argc != 4) {
    std::fprintf(stderr, "usage: clean_copy_timing IMAGE OUT ROUNDS\n");
    return 2;
  }
  const std::filesystem::path image = argv[1];
  const std::filesystem::path out = argv[2];
  const int rounds = std::max(1, std::atoi(argv[3]));
  platform::DecoderClient decoder;
  decoder.warmUp();

  const double copy = medianMilliseconds(rounds, [&] {
    const auto item = platform::openItem(image);
    auto pending = PendingFile::create(out);
    if (!item || !pending) return false;
    const auto outcome = decoder.cleanCopy(
        platform::requestInput(*item), {CleanCopyKind::pixelSafe, 0},
        [&pending](std::span<const std::byte> chunk) { return pending->append(chunk); });
    return outcome && outcome->status == platform::decoder::CleanCopyStatus::written &&
           !pending->commit();
  });
  const double check = medianMilliseconds(rounds, [&] {
    const auto source = platform::openItem(image);
    const auto copied = platform::openItem(out);
    return source && copied &&
           checkCleanCopy(*source, *copied, CleanCopyKind::pixelSafe, decoder).passed();
  });
  const double whole = medianMilliseconds(rounds, [&] {
    return makePixelSafeCopy(image, out, decoder).state == CleanCopyState::saved;
  });
  std::printf("copy %.2f ms, check %.2f ms, makePixelSafeCopy %.2f ms (medians of %d)\n", copy,
              check, whole, rounds);
  return 0;
}
