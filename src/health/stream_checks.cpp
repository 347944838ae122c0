// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include <string_view>

#include "core/path_text.h"
#include "health/check_outcomes.h"
#include "health/structure_checks.h"
#include "platform/child_process.h"

namespace lumenscribe {

namespace {

using platform::decoder::CompressedFormat;
using platform::decoder::StreamTestOutcome;
using namespace check;

// unzip's exit statuses, as its manual documents them.
enum UnzipStatus : int {
  kWarnings = 1,            // processing completed; something was odd (extra bytes, empty)
  kNoPasswordTerminal = 5,  // no terminal to ask for a password on
  kUnsupported = 81,        // a compression method or encryption it cannot test
  kBadPassword = 82,
};

bool mentions(std::string_view text, std::string_view word) {
  return text.find(word) != std::string_view::npos;
}

// Statuses that say nothing about the archive: out of memory (4 to 8), bad options, no
// matching files, a full disk, an interrupt.
bool saysNothingAboutTheArchive(int status) {
  return (status >= 4 && status <= 8) || status == 10 || status == 11 || status == 50 ||
         status == 80;
}

StructureCheckResult encrypted() {
  return limited("Encrypted / password required",
                 "The ZIP appears encrypted or password-protected, so Lumenscribe could not "
                 "fully verify its contents.");
}

std::string_view formatName(CompressedFormat format) {
  switch (format) {
    case CompressedFormat::gzip: return "gzip";
    case CompressedFormat::bzip2: return "bzip2";
    case CompressedFormat::xz: return "xz";
    case CompressedFormat::zstd: return "Zstandard";
  }
  return "compressed";
}

}  // namespace

StructureCheckResult testZipIntegrity(const platform::OpenedItem& item,
                                      const std::filesystem::path& unzipTool) {
  // unzip opens the archive we opened, as its own descriptor 3: not the path, which may name
  // another file by now and whose *, ? and [ unzip would read as a pattern.
  constexpr int kArchive = 3;
  const platform::InheritedDescriptor archive{item.descriptor(), kArchive};
  const auto run =
      item.isReadable()
          ? platform::runChildProcess(unzipTool, {"-tqq", "/dev/fd/" + std::to_string(kArchive)},
                                      platform::ChildOutput::merged, 64 * 1024 * 1024,
                                      std::span(&archive, 1))
          : std::nullopt;
  const StructureCheckResult couldNotTest =
      limited("Could not test", "Lumenscribe could not run the ZIP integrity test.");
  // Killed by a signal: the tool said nothing about the archive.
  if (!run || !run->exitStatus) return couldNotTest;
  const int status = *run->exitStatus;
  if (status == 0) {
    return {"Integrity test passed",
            "The ZIP archive passed a non-extracting integrity test.",
            false,
            false,
            {}};
  }
  // Output that is not UTF-8 says nothing; unzip's "unable to get password" counts too.
  const std::string output = validUtf8(run->output) == run->output ? asciiLower(run->output) : "";
  if (mentions(output, "password") || mentions(output, "encrypted") ||
      status == kNoPasswordTerminal || status == kBadPassword) {
    return encrypted();
  }
  // Entries skipped for a method unzip lacks end in status 1 or 81; AES encryption is
  // compression method 99 to it.
  if (status == kUnsupported || (status == kWarnings && mentions(output, "unsupported"))) {
    if (mentions(output, "method 99")) return encrypted();
    return limited("Unsupported compression",
                   "The ZIP uses a compression method or encryption that the system's unzip "
                   "tool cannot test, so Lumenscribe could not fully verify its contents.");
  }
  if (status == kWarnings) {
    return passed("Integrity test passed",
                  "Every entry passed the ZIP integrity test; unzip only warned about the "
                  "archive's layout, such as bytes before it or no entries at all.");
  }
  if (saysNothingAboutTheArchive(status)) return couldNotTest;
  return problem("Integrity test failed",
                 "The ZIP archive did not pass its integrity test and may be damaged or "
                 "truncated.");
}

StructureCheckResult testCompressedStream(const platform::OpenedItem& item, CompressedFormat format,
                                          platform::DecoderClient& decoder) {
  const auto test = decoder.compressedStream(item, format);
  if (!test) return decoderGaveNoAnswer(test.error(), "decompression test");
  const std::string name(formatName(format));
  switch (test->outcome) {
    case StreamTestOutcome::intact:
      if (test->trailingData) {
        return passed("Decompression test passed",
                      "The " + name +
                          " data decompressed in full; bytes after its end, which "
                          "decompressors ignore, are not part of it.");
      }
      return passed("Decompression test passed");
    case StreamTestOutcome::truncated:
      return problem(
          "Unexpected end of data",
          "The " + name + " data ends before its last block: the file appears truncated.");
    case StreamTestOutcome::corrupt:
      return problem("Decompression test failed",
                     "The " + name +
                         " data did not pass a full decompression test: it is damaged or does "
                         "not match its checksum.");
    case StreamTestOutcome::outOfTime:
      return limited("Partly checked",
                     "The " + name +
                         " data is too large to decompress in full within Lumenscribe's time "
                         "limit; the part tested showed no problem.");
    case StreamTestOutcome::tooMuchMemory:
      return limited("Needs too much memory",
                     "Decompressing this " + name +
                         " data would need more memory than Lumenscribe allows itself, so it "
                         "was not tested.");
    case StreamTestOutcome::unsupported: break;
  }
  return limited("Could not test", "Lumenscribe could not run the decompression test.");
}

StructureCheckResult checkMediaStructure(const platform::OpenedItem& item,
                                         platform::DecoderClient& decoder) {
  const auto media = decoder.mediaPackets(item);
  if (!media) return decoderGaveNoAnswer(media.error(), "media reader");
  if (!media->opened && media->checksumErrors == 0) {
    return problem("Could not open",
                   "The file identifies as audio or video, but the media reader could not open "
                   "its container.");
  }
  if (media->checksumErrors > 0) {
    return problem("Checksum failures",
                   "Reading every packet found " +
                       counted(media->checksumErrors, "checksum failure", "checksum failures") +
                       (media->readErrors > 0
                            ? " and " + counted(media->readErrors, "read error", "read errors")
                            : std::string()) +
                       ": parts of the file are damaged.");
  }
  if (media->readErrors > 0) {
    return problem("Read errors", "Reading every packet found " +
                                      counted(media->readErrors, "error", "errors") +
                                      ": the file may be truncated or damaged.");
  }
  if (media->packets == 0) {
    return limited("No packets",
                   "The media reader opened the container but found no audio or video packets in "
                   "it, so there was nothing to verify.");
  }
  if (!media->complete) {
    return limited("Partly checked",
                   "The file is too long to read in full within Lumenscribe's time limit; the "
                   "packets read showed no problem.");
  }
  return passed(counted(media->packets, "packet read", "packets read"));
}

}  // namespace lumenscribe
