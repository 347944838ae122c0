// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// decoder_round_trip FILE ROUNDS: what the decoder worker costs beside the decoding itself.
//  - start: a new worker, from spawn to its hello (libraries loaded, confinement on);
//  - round trip: one request with the item's descriptor passed across and the reply read
//    back, on a warm worker, for a file no loader takes (so next to nothing is decoded).
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "platform/decoder_client.h"
#include "platform/opened_item.h"

namespace {

using Clock = std::chrono::steady_clock;

double micros(Clock::duration elapsed) {
  return std::chrono::duration<double, std::micro>(elapsed).count();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: decoder_round_trip FILE ROUNDS\n");
    return 2;
  }
  const int rounds = std::max(1, std::atoi(argv[2]));
  auto item = lumenscribe::platform::openItem(argv[1]);
  if (!item) return 1;

  std::vector<double> starts;
  for (int i = 0; i < std::min(rounds, 20); ++i) {
    lumenscribe::platform::DecoderClient client;
    const auto begin = Clock::now();
    client.warmUp();
    starts.push_back(micros(Clock::now() - begin));
  }

  lumenscribe::platform::DecoderClient client;
  client.warmUp();
  std::vector<double> trips;
  for (int i = 0; i < rounds; ++i) {
    const auto begin = Clock::now();
    if (!client.imageStatus(*item)) return 1;
    trips.push_back(micros(Clock::now() - begin));
  }
  std::printf("worker start (spawn to hello): median %.0f us over %zu\n", median(starts),
              starts.size());
  std::printf("request round trip (descriptor passed, reply read): median %.0f us over %d\n",
              median(trips), rounds);
  return 0;
}
