// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// image_metadata_timing MODE FILE [RUNS]: times one piece of the image pass and prints the
// median in milliseconds.
//   request       the property map through a warm decoder worker, one request per run
//   cold-request  the whole of it in a fresh process: start a worker, one request, end
//   decode        the health check's full libvips decode of image 0, in this process
//   coefficients  libjpeg's jpeg_read_coefficients over the whole file, in this process
#include <algorithm>
#include <chrono>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "decoder/image_status.h"
#include "decoder/item_bytes.h"
#include "platform/decoder_client.h"
#include "platform/opened_item.h"

// After <cstdio>: libjpeg's header needs FILE and size_t declared before it.
#include <jpeglib.h>

namespace {

using namespace lumenscribe;
using Clock = std::chrono::steady_clock;

double medianMilliseconds(int runs, const std::function<bool()>& run) {
  std::vector<double> times;
  for (int i = 0; i < runs; ++i) {
    const auto start = Clock::now();
    if (!run()) return -1;
    times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
  }
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

struct JpegErrors {
  jpeg_error_mgr manager;
  std::jmp_buf failed;
};

// Entropy-decodes every scan into coefficient arrays: what a check without the inverse DCT,
// upsampling and colour conversion would cost.
bool readCoefficients(const std::vector<unsigned char>& file) {
  jpeg_decompress_struct jpeg{};
  JpegErrors errors{};
  jpeg.err = jpeg_std_error(&errors.manager);
  errors.manager.error_exit = [](j_common_ptr info) {
    std::longjmp(reinterpret_cast<JpegErrors*>(info->err)->failed, 1);
  };
  errors.manager.emit_message = [](j_common_ptr, int) {};
  if (setjmp(errors.failed) != 0) {
    jpeg_destroy_decompress(&jpeg);
    return false;
  }
  jpeg_create_decompress(&jpeg);
  jpeg_mem_src(&jpeg, file.data(), static_cast<unsigned long>(file.size()));
  jpeg_read_header(&jpeg, TRUE);
  jpeg_read_coefficients(&jpeg);
  jpeg_destroy_decompress(&jpeg);
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: image_metadata_timing MODE FILE [RUNS]\n");
    return 2;
  }
  const std::string_view mode = argv[1];
  const int runs = argc > 3 ? std::max(1, std::atoi(argv[3])) : 15;
  auto item = platform::openItem(argv[2]);
  if (!item) return 1;
  double median = -1;
  if (mode == "request" || mode == "cold-request") {
    platform::DecoderClient decoder;
    // A reply counts only when it holds the camera's EXIF.
    const auto request = [&] {
      const auto reply = decoder.imageProperties(*item);
      return reply && reply->has_value() && (*reply)->properties.contains("{Exif}");
    };
    if (mode == "cold-request") return request() ? 0 : 1;
    decoder.warmUp();
    median = medianMilliseconds(runs, request);
  } else if (mode == "decode") {
    const decoder::ItemBytes bytes{item->descriptor(), item->size()};
    decoder::initialiseVips();
    median = medianMilliseconds(runs, [&] {
      return decoder::decodeImageStatus(bytes) == decoder::ImageDecodeStatus::complete;
    });
  } else if (mode == "coefficients") {
    std::ifstream in(argv[2], std::ios::binary);
    const std::vector<unsigned char> file(std::istreambuf_iterator<char>(in), {});
    median = medianMilliseconds(runs, [&] { return readCoefficients(file); });
  } else {
    std::fprintf(stderr, "image_metadata_timing: unknown mode %s\n", argv[1]);
    return 2;
  }
  if (median < 0) return 1;
  std::printf("%.2f\n", median);
  return 0;
}
