// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// analyze text|pdf|icu FILE: runs the text or the PDF analysis once on FILE, opened as the
// driver opens it, and prints its counts; `icu` counts the same things the naive way (ICU's
// RegexMatcher and break iterator over the whole text as UTF-16) for comparison.
// analyze pdf-warm FILE RUNS: the PDF analysis RUNS times with a decoder worker started
// beforehand, as the window starts it; prints the median time of one analysis in seconds.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "analyzers/pdf_analysis.h"
#include "analyzers/text_analysis.h"
#include "icu_reference.h"
#include "platform/decoder_client.h"
#include "platform/item_content.h"
#include "platform/opened_item.h"

namespace {

using namespace lumenscribe;

void print(const Accumulators& accumulators) {
  for (const auto& [key, value] : accumulators.rawMetadata) {
    std::printf("%s: %s\n", key.c_str(), value.c_str());
  }
}

}  // namespace

// The median of `runs` PDF analyses by one worker that is running before the first.
double warmPdfSeconds(const platform::OpenedItem& item, int runs) {
  platform::DecoderClient decoder;
  decoder.warmUp();
  std::vector<double> seconds;
  for (int run = 0; run < runs; ++run) {
    Accumulators accumulators;
    const auto start = std::chrono::steady_clock::now();
    analyzePDF(item, decoder, accumulators);
    seconds.push_back(
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  std::sort(seconds.begin(), seconds.end());
  return seconds[seconds.size() / 2];
}

int main(int argc, char** argv) {
  if (argc == 4 && std::string_view(argv[1]) == "pdf-warm") {
    auto item = platform::openItem(argv[2]);
    if (!item) return 1;
    std::printf("%.6f\n", warmPdfSeconds(*item, std::max(1, std::atoi(argv[3]))));
    return 0;
  }
  if (argc != 3) {
    std::fprintf(stderr, "usage: analyze text|pdf|icu FILE, or analyze pdf-warm FILE RUNS\n");
    return 2;
  }
  const std::string_view mode = argv[1];
  auto item = platform::openItem(argv[2]);
  if (!item) {
    std::fprintf(stderr, "analyze: %s: %s\n", argv[2], item.error().message().c_str());
    return 1;
  }
  Accumulators accumulators;
  if (mode == "text") {
    analyzeText(*item, accumulators);
  } else if (mode == "pdf") {
    platform::DecoderClient decoder;
    analyzePDF(*item, decoder, accumulators);
  } else if (mode == "icu") {
    const auto file = platform::ItemContent::read(item->descriptor(), item->size());
    if (!file) return 1;
    const ContentCounts counts = test::icuContentCounts(file->text());
    accumulators.setRaw("Text Characters", std::to_string(test::icuGraphemeCount(file->text())));
    accumulators.setRaw("Text Email Addresses", std::to_string(counts.emailAddresses));
    accumulators.setRaw("Text IP Addresses", std::to_string(counts.ipAddresses));
    accumulators.setRaw("Text Phone-like Numbers", std::to_string(counts.phoneNumbers));
    accumulators.setRaw("Text URLs", std::to_string(counts.webLinks));
  } else {
    std::fprintf(stderr, "analyze: unknown mode %s\n", argv[1]);
    return 2;
  }
  print(accumulators);
  return 0;
}
