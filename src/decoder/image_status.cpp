// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/image_status.h"

#include <gmodule.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lumenscribe::decoder {

namespace {

// Damaged images can warn once per row; the first few say all there is to say.
constexpr std::size_t kMessageCap = 64 * 1024;

// libvips keeps one error buffer and one log domain for the whole process, so a check's
// messages are its own only while no other check runs.
std::mutex& checkMutex() {
  static std::mutex mutex;
  return mutex;
}

// Where the log handler puts the VIPS domain's messages while a check runs; decoding
// happens on libvips' worker thread, so the sink is shared under a lock.
struct WarningLog {
  std::mutex mutex;
  std::string* sink = nullptr;
};

WarningLog& warningLog() {
  static WarningLog log;
  return log;
}

void onVipsLog(const gchar* /*domain*/, GLogLevelFlags /*level*/, const gchar* message,
               gpointer /*data*/) {
  // Called from C: nothing may be thrown through libvips' frames.
  try {
    WarningLog& log = warningLog();
    const std::lock_guard lock(log.mutex);
    if (log.sink == nullptr || message == nullptr || log.sink->size() >= kMessageCap) return;
    log.sink->append(message).push_back('\n');
  } catch (...) {
    // A message lost to a failed allocation only makes a verdict less specific.
  }
}

// Collects the VIPS domain's messages for as long as it lives.
class WarningCapture {
 public:
  WarningCapture() {
    const std::lock_guard lock(warningLog().mutex);
    warningLog().sink = &messages_;
  }
  ~WarningCapture() {
    const std::lock_guard lock(warningLog().mutex);
    warningLog().sink = nullptr;
  }
  WarningCapture(const WarningCapture&) = delete;
  WarningCapture& operator=(const WarningCapture&) = delete;

  std::string take() {
    const std::lock_guard lock(warningLog().mutex);
    return std::exchange(messages_, {});
  }

 private:
  std::string messages_;
};

std::string takeVipsErrors() {
  char* text = vips_error_buffer_copy();
  std::string errors = text != nullptr ? text : "";
  g_free(text);
  return errors;
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

bool isBlank(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; });
}

// libtiff's short-read message: "... got 1200 bytes, expected 4096".
bool saysShortRead(std::string_view text) {
  for (std::size_t at = text.find("got "); at != std::string_view::npos;
       at = text.find("got ", at + 1)) {
    std::size_t cursor = at + 4;
    const std::size_t digits = cursor;
    while (cursor < text.size() && std::isdigit(static_cast<unsigned char>(text[cursor]))) ++cursor;
    if (cursor > digits && text.substr(cursor).starts_with(" bytes, expected ")) return true;
  }
  return false;
}

// The header failed because the data ran out rather than because it is wrong.
bool headerSaysDataEnded(std::string_view messages) {
  return isBlank(messages) || contains(messages, "Premature end") ||
         contains(messages, "Unexpected end") || contains(messages, "not enough data");
}

// Only a lenient decode got through, and what stopped the strict one was the data ending.
// "Corrupt JPEG data: premature end of data segment" is damage inside the data, not this.
bool decodeSaysDataEnded(std::string_view messages) {
  return contains(messages, "Premature end of input file") ||
         contains(messages, "Premature end of JPEG file") ||
         contains(messages, "not enough data") || contains(messages, "Unexpected end") ||
         saysShortRead(messages);
}

// A RIFF container (WebP) whose size field claims more bytes than the file has; its
// loader only says that it cannot parse the image.
bool riffSizeBeyondFile(std::span<const std::byte> head, std::int64_t fileSize) {
  if (head.size() < 8) return false;
  const auto byte = [&](std::size_t index) { return std::to_integer<std::uint32_t>(head[index]); };
  if (byte(0) != 'R' || byte(1) != 'I' || byte(2) != 'F' || byte(3) != 'F') return false;
  const std::int64_t declared = byte(4) | byte(5) << 8 | byte(6) << 16 | byte(7) << 24;
  return declared + 8 > fileSize;
}

// The loader met a feature it lacks (old-style JPEG in TIFF, an exotic subsampling): that
// says nothing about damage.
bool saysUnsupported(std::string_view messages) {
  return contains(messages, "not supported") || contains(messages, "unsupported");
}

struct DecodePass {
  bool headerLoaded = false;
  bool hasImage = false;
  bool decoded = false;
  std::string messages;
};

// Loads the header from `source` with `loader` and decodes every pixel of image 0, a strip at
// a time, so nothing beyond a few scanlines is ever held in memory.
DecodePass decode(const char* loader, VipsSource* source, VipsFailOn failOn) {
  DecodePass pass;
  WarningCapture capture;
  vips_error_clear();
  VipsImage* loaded = nullptr;
  const int failed = vips_call(loader, source, &loaded, "access", VIPS_ACCESS_SEQUENTIAL, "fail_on",
                               failOn, nullptr);
  const ImagePtr image(loaded);
  if (failed == 0 && image) {
    pass.headerLoaded = true;
    pass.hasImage = vips_image_get_n_pages(image.get()) >= 1;
    // Every scanline is produced and dropped: the decode is the whole check, and no sum
    // or statistic of the pixels is worth its cost here.
    const auto dropPixels = [](VipsRegion* /*region*/, VipsRect* /*area*/, void* /*data*/) {
      return 0;
    };
    pass.decoded = pass.hasImage && vips_sink_disc(image.get(), dropPixels, nullptr) == 0;
  }
  pass.messages = takeVipsErrors() + capture.take();
  return pass;
}

// libvips loads every module in its folder as it starts (ImageMagick, OpenSlide, poppler,
// JPEG XL), about 30 ms of each worker's start-up, although their loaders are all blocked
// here. It is pointed at a prefix with no modules instead, and the one module whose loader
// we use, HEIF, is opened by hand (opening it registers its loaders, as libvips would).
bool startVipsWithHeifModuleOnly() {
  const char* const home = g_getenv("VIPSHOME");
  const std::string previous = home != nullptr ? home : "";
  g_setenv("VIPSHOME", "/nonexistent/lumenscribe-without-vips-modules", TRUE);
  const bool started = VIPS_INIT("lumenscribe") == 0;
  if (home != nullptr) {
    g_setenv("VIPSHOME", previous.c_str(), TRUE);
  } else {
    g_unsetenv("VIPSHOME");
  }
  if (!started) return false;
  if (GModule* heif =
          g_module_open(LUMENSCRIBE_VIPS_MODULE_DIR "/vips-heif.so",
                        static_cast<GModuleFlags>(G_MODULE_BIND_LAZY | G_MODULE_BIND_LOCAL))) {
    g_module_make_resident(heif);
  }
  return true;
}

}  // namespace

bool initialiseVips() {
  static const bool ready = [] {
    // Installed first, so that even start-up warnings stay off the user's terminal.
    g_log_set_handler(
        "VIPS",
        static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK | G_LOG_FLAG_FATAL | G_LOG_FLAG_RECURSION),
        onVipsLog, nullptr);
    if (!startVipsWithHeifModuleOnly()) {
      vips_error_clear();
      return false;
    }
    vips_block_untrusted_set(TRUE);
    // A text file of numbers is not a picture, whatever it is named.
    vips_operation_block_set("VipsForeignLoadMatrix", TRUE);
    vips_cache_set_max(0);
    // At libvips' default concurrency a damaged JPEG was sometimes decoded clean; with
    // one worker it is caught every time.
    vips_concurrency_set(1);
    return true;
  }();
  return ready;
}

// libvips' own search returns blocked loaders too (which then refuse to run), and would stop
// at a blocked one that claims a file an allowed loader reads, such as a tiled TIFF.
const char* unblockedLoaderFor(VipsSource* source) {
  const auto accepts = [](void* item, void* data, void* /*unused*/) -> void* {
    auto* const loader = static_cast<VipsForeignLoadClass*>(item);
    auto* const candidate = static_cast<VipsSource*>(data);
    const char* const nickname = VIPS_OBJECT_CLASS(item)->nickname;
    if (nickname == nullptr || !std::string_view(nickname).ends_with("_source") ||
        loader->is_a_source == nullptr) {
      return nullptr;
    }
    if ((VIPS_OPERATION_CLASS(item)->flags & VIPS_OPERATION_BLOCKED) != 0) return nullptr;
    // A test may have read rather than sniffed: every test starts from the first byte.
    if (vips_source_rewind(candidate) != 0) return nullptr;
    return loader->is_a_source(candidate) ? item : nullptr;
  };
  void* const found = vips_foreign_map("VipsForeignLoad", accepts, source, nullptr);
  if (vips_source_rewind(source) != 0) return nullptr;
  return found != nullptr ? VIPS_OBJECT_CLASS(found)->nickname : nullptr;
}

std::optional<SequentialImage> openSequentially(const ItemBytes& item) {
  if (!initialiseVips()) return std::nullopt;
  const SourcePtr source = vipsSourceFor(item);
  const char* const loader = source ? unblockedLoaderFor(source.get()) : nullptr;
  VipsImage* loaded = nullptr;
  if (loader == nullptr ||
      vips_call(loader, source.get(), &loaded, "access", VIPS_ACCESS_SEQUENTIAL, nullptr) != 0) {
    if (loaded != nullptr) g_object_unref(loaded);
    vips_error_clear();
    return std::nullopt;
  }
  return SequentialImage{ImagePtr(loaded), loader};
}

ImageDecodeStatus decodeImageStatus(const ItemBytes& item) {
  const auto head = item.read(0, 12);
  if (!head || !initialiseVips()) return ImageDecodeStatus::noLoader;

  const std::lock_guard lock(checkMutex());
  const SourcePtr source = vipsSourceFor(item);
  const char* const loader = source ? unblockedLoaderFor(source.get()) : nullptr;
  if (loader == nullptr) {
    vips_error_clear();
    return ImageDecodeStatus::noLoader;
  }

  const DecodePass strict = decode(loader, source.get(), VIPS_FAIL_ON_WARNING);
  if (!strict.headerLoaded) {
    if (saysUnsupported(strict.messages)) return ImageDecodeStatus::unsupported;
    return headerSaysDataEnded(strict.messages) || riffSizeBeyondFile(*head, item.size)
               ? ImageDecodeStatus::headerTruncated
               : ImageDecodeStatus::headerInvalid;
  }
  if (!strict.hasImage) return ImageDecodeStatus::noImage;
  if (strict.decoded) return ImageDecodeStatus::complete;

  // A fresh source: the strict pass may have left this one anywhere.
  const SourcePtr again = vipsSourceFor(item);
  const DecodePass lenient = again ? decode(loader, again.get(), VIPS_FAIL_ON_NONE) : DecodePass{};
  if (!lenient.decoded) {
    return saysUnsupported(strict.messages + lenient.messages) ? ImageDecodeStatus::unsupported
                                                               : ImageDecodeStatus::decodeFailed;
  }
  return decodeSaysDataEnded(strict.messages + lenient.messages) ? ImageDecodeStatus::incomplete
                                                                 : ImageDecodeStatus::invalidData;
}

}  // namespace lumenscribe::decoder
