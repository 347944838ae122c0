// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// What the engine and the decoder worker say to each other over their socket. Every message
// is one frame: a 16-byte header, then `length` bytes of payload. A request carries the
// item's descriptor beside its header (SCM_RIGHTS); a reply carries plain data only.
//
// Neither side trusts the other's numbers: lengths are capped before anything is allocated,
// and every payload is read through a Reader that fails instead of reading past its end.
namespace lumenscribe::platform::decoder {

inline constexpr std::uint32_t kMagic = 0x5744534C;  // "LSDW", little-endian
// Bumped with every change to a frame or payload layout; a worker of another version is
// refused at its hello.
inline constexpr std::uint16_t kProtocolVersion = 1;
inline constexpr std::size_t kHeaderSize = 16;
// Requests are a few numbers; replies are at most a preview's pixels or a metadata map.
inline constexpr std::uint32_t kMaxRequestPayload = 64 * 1024;
inline constexpr std::uint32_t kMaxReplyPayload = 64 * 1024 * 1024;
// The largest preview a request may ask for, on each side.
inline constexpr int kMaxPreviewSide = 2048;

/// The work a request names.
enum class RequestKind : std::uint16_t {
  hello = 1,           // sent by the worker once it is ready; never by the engine
  imageStatus = 2,     // how far image 0 decodes
  pdfFacts = 3,        // lock, encryption and page count of a PDF
  pdfFirstPage = 4,    // page 0 of a PDF, rendered to fit a box
  picturePreview = 5,  // the image itself, scaled to fit a box
  pdfAnalysis = 6,     // the facts, info attributes, page texts and whole text of a PDF

  // Accepted only by workers built with the test hooks (never in a release build).
  testCrash = 100,             // dies of SIGSEGV in the middle of the request
  testHang = 101,              // never answers
  testGarbageReply = 102,      // answers bytes that are not a frame
  testOverlongReply = 103,     // answers a header whose length is past the reply cap
  testShortReply = 104,        // answers a header that promises more than it sends, then exits
  testProbeConfinement = 105,  // tries what the confinement forbids and says what happened
  testAllocate = 106,          // allocates and touches the given number of MiB
};

/// The status in a reply header's `kind` field.
enum class ReplyStatus : std::uint16_t {
  ok = 0,
  unknownRequest = 1,  // the worker does not serve this kind
  badRequest = 2,      // the payload did not parse
  failed = 3,          // the work threw (out of memory, a library exception)
};

struct FrameHeader {
  std::uint32_t magic = kMagic;
  std::uint16_t version = kProtocolVersion;
  std::uint16_t kind = 0;  // a RequestKind in a request, a ReplyStatus in a reply
  std::uint32_t length = 0;
  std::uint32_t reserved = 0;
};

std::array<std::byte, kHeaderSize> encodeHeader(const FrameHeader& header);
/// Nothing unless the bytes carry our magic and version and `length` is at most `maxPayload`.
std::optional<FrameHeader> decodeHeader(std::span<const std::byte, kHeaderSize> bytes,
                                        std::uint32_t maxPayload);

/// Little-endian fixed-width numbers and length-prefixed byte strings.
class Writer {
 public:
  void u8(std::uint8_t value) { bytes_.push_back(std::byte{value}); }
  void u32(std::uint32_t value);
  void i32(std::int32_t value) { u32(static_cast<std::uint32_t>(value)); }
  void i64(std::int64_t value);
  void bytes(std::span<const std::byte> value);
  void text(std::string_view value);
  /// Appends bytes as they are, without a length.
  void raw(std::span<const std::byte> value) {
    bytes_.insert(bytes_.end(), value.begin(), value.end());
  }

  const std::vector<std::byte>& data() const& { return bytes_; }
  std::vector<std::byte> data() && { return std::move(bytes_); }

 private:
  std::vector<std::byte> bytes_;
};

/// Reads what a Writer wrote. Once a read would pass the end, every later read fails too,
/// so a caller may read a whole record and check `ok()` once.
class Reader {
 public:
  explicit Reader(std::span<const std::byte> bytes) : bytes_(bytes) {}

  std::uint8_t u8();
  std::uint32_t u32();
  std::int32_t i32() { return static_cast<std::int32_t>(u32()); }
  std::int64_t i64();
  /// A byte string of at most `maxSize` bytes, viewing the reader's buffer.
  std::span<const std::byte> bytes(std::size_t maxSize);
  std::string text(std::size_t maxSize);
  /// Everything not read yet.
  std::span<const std::byte> rest() { return take(bytes_.size()); }

  bool ok() const { return ok_; }
  /// True when every byte was read and nothing failed.
  bool finished() const { return ok_ && bytes_.empty(); }

 private:
  std::span<const std::byte> take(std::size_t count);

  std::span<const std::byte> bytes_;
  bool ok_ = true;
};

// ---- What the requests answer ----------------------------------------------------------

/// How far image 0 of a file could be decoded.
enum class ImageDecodeStatus : std::uint8_t {
  noLoader = 0,         // no image loader we allow takes the bytes
  noImage = 1,          // a loader took them, but they hold no image
  headerTruncated = 2,  // the header does not load because the data ends
  headerInvalid = 3,    // the header does not load for any other reason
  complete = 4,         // a strict decode of every pixel succeeded
  incomplete = 5,       // only a lenient decode succeeded, and the data ended early
  invalidData = 6,      // only a lenient decode succeeded, past damaged data
  decodeFailed = 7,     // the header loads, but not even a lenient decode gets through
};
inline constexpr std::uint8_t kLastImageDecodeStatus = 7;

/// What opening a PDF tells. A document locked by a user password is reported encrypted
/// and locked, and nothing else of it is touched.
struct PdfOpenFacts {
  bool opened = false;  // false: the reader could not open the document at all
  bool encrypted = false;
  bool locked = false;
  std::int32_t pageCount = 0;

  friend bool operator==(const PdfOpenFacts&, const PdfOpenFacts&) = default;
};

/// Width and height of a page box, in points.
struct PageSize {
  double width = 0;
  double height = 0;

  friend bool operator==(const PageSize&, const PageSize&) = default;
};

/// The pages a PDF analysis reads: `count` pages from index `first` (fewer where the document
/// ends), so that two workers can share a long document.
struct PageRange {
  std::int32_t first = 0;
  std::int32_t count = INT32_MAX;

  friend bool operator==(const PageRange&, const PageRange&) = default;
};

/// The whole text a PDF analysis sends at most; a longer text is cut at a page end.
inline constexpr std::size_t kMaxPdfText = 56 * 1024 * 1024;
/// The longest info-dictionary value it sends; a longer one is cut at a character end.
inline constexpr std::size_t kMaxPdfInfoText = 1024 * 1024;

/// What the PDF analysis reads of a document and of the pages of a range. A document locked
/// by a user password is reported encrypted and locked, and nothing else of it is touched.
struct PdfAnalysis {
  bool opened = false;  // false: the reader could not open the document at all
  bool encrypted = false;
  bool locked = false;
  std::int32_t pageCount = 0;  // of the whole document
  /// Pages of the range whose text, trimmed of white space (form feeds included), is not
  /// empty.
  std::int32_t textPageCount = 0;
  /// The info dictionary's text entries (UTF-8), each only when the document has it.
  std::optional<std::string> title;
  std::optional<std::string> author;
  std::optional<std::string> subject;
  std::optional<std::string> creator;
  std::optional<std::string> producer;
  /// Its dates, in seconds since 1970 UTC, each only when present and readable as a date.
  std::optional<std::int64_t> creationDate;
  std::optional<std::int64_t> modificationDate;
  /// Absolute width and height of page 0's media box; nothing without a page 0 or when the
  /// range does not hold it.
  std::optional<PageSize> firstPageSize;
  /// The texts of the range's pages joined with line feeds (UTF-8), empty pages included.
  std::string text;
  /// False when `text` was cut at a page end to stay within kMaxPdfText.
  bool textComplete = true;

  friend bool operator==(const PdfAnalysis&, const PdfAnalysis&) = default;
};

/// 8-bit RGBA pixels, rows top to bottom, no padding.
struct RgbaImage {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::vector<std::uint8_t> pixels;
};

/// The box a preview must fit in.
struct PreviewBox {
  std::int32_t maxWidth = 0;
  std::int32_t maxHeight = 0;
};

/// What the test-only probe found, as errno values (0: the attempt succeeded).
struct ConfinementProbe {
  std::int32_t openForWriting = 0;
  std::int32_t createSocket = 0;
  std::int32_t execute = 0;
  std::int32_t killParent = 0;
  std::int32_t readOutsideAllowed = 0;  // reading a file outside the allowed folders
};

/// How far the worker could confine itself, told in its hello.
struct Confinement {
  bool noNewPrivileges = false;
  bool seccomp = false;
  bool landlock = false;
  bool limits = false;

  bool complete() const { return noNewPrivileges && seccomp && limits; }
};

void write(Writer& out, ImageDecodeStatus status);
void write(Writer& out, const PdfOpenFacts& facts);
void write(Writer& out, const PdfAnalysis& analysis);
void write(Writer& out, const PageRange& range);
void write(Writer& out, const std::optional<RgbaImage>& image);
void write(Writer& out, const PreviewBox& box);
void write(Writer& out, const ConfinementProbe& probe);
void write(Writer& out, const Confinement& confinement);

// Each reads one record and fails (nothing) on any byte out of place: a short or long
// payload, an unknown status, a preview larger than its box or with the wrong pixel count.
std::optional<ImageDecodeStatus> readImageDecodeStatus(Reader& in);
std::optional<PdfOpenFacts> readPdfOpenFacts(Reader& in);
/// Also fails on a text that is not UTF-8, a negative or impossible count, or a page size
/// that is not a finite, non-negative number.
std::optional<PdfAnalysis> readPdfAnalysis(Reader& in);
std::optional<PageRange> readPageRange(Reader& in);
std::optional<std::optional<RgbaImage>> readPreview(Reader& in, const PreviewBox& box);
std::optional<PreviewBox> readPreviewBox(Reader& in);
std::optional<ConfinementProbe> readConfinementProbe(Reader& in);
std::optional<Confinement> readConfinement(Reader& in);

}  // namespace lumenscribe::platform::decoder
