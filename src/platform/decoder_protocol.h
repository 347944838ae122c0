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

#include "core/metadata_value.h"

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
  hello = 1,             // sent by the worker once it is ready; never by the engine
  imageStatus = 2,       // how far image 0 decodes
  pdfFacts = 3,          // lock, encryption and page count of a PDF
  pdfFirstPage = 4,      // page 0 of a PDF, rendered to fit a box
  picturePreview = 5,    // the image itself, scaled to fit a box
  pdfStructure = 6,      // poppler's and qpdf's structural checks of a whole PDF
  compressedStream = 7,  // a full decompression test of a gzip, bzip2, xz or zstd stream
  mediaPackets = 8,      // every packet of an audio or video file, demuxed, not decoded
  pdfAnalysis = 9,       // the facts, info attributes, page texts and whole text of a PDF
  // The property map of image 0: pixels, colour, EXIF, GPS, IPTC, XMP...
  imageProperties = 17,
  // The streams, tracks and tags of an audio or video file, read in one probe.
  mediaDescription = 20,
  // SHA-256 of image 0's pixels as 8-bit sRGB RGBA with alpha premultiplied: what the file
  // comparison compares
  pixelFingerprint = 21,
  // The format of the picture a clean copy would be written in, and its image count
  cleanCopySource = 22,
  // A clean copy of the item, its bytes sent back in chunk frames before the reply: the worker
  // never holds a file it could write
  cleanCopy = 23,

  // Accepted only by workers built with the test hooks (never in a release build).
  testCrash = 100,             // dies of SIGSEGV in the middle of the request
  testHang = 101,              // never answers
  testGarbageReply = 102,      // answers bytes that are not a frame
  testOverlongReply = 103,     // answers a header whose length is past the reply cap
  testShortReply = 104,        // answers a header that promises more than it sends, then exits
  testProbeConfinement = 105,  // tries what the confinement forbids and says what happened
  testAllocate = 106,          // allocates and touches the given number of MiB
};

/// A file whose first 64 bytes hold this line makes a test build's worker die while decoding
/// it, so that tests of the command line and the window can watch a crash end to end.
inline constexpr std::string_view kTestCrashMarker = "LUMENSCRIBE TEST: CRASH THE DECODER";

/// The status in a reply header's `kind` field.
enum class ReplyStatus : std::uint16_t {
  ok = 0,
  unknownRequest = 1,  // the worker does not serve this kind
  badRequest = 2,      // the payload did not parse
  failed = 3,          // the work threw (out of memory, a library exception)
  chunk = 4,           // a piece of the request's output; more frames follow, the reply last
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
  unsupported = 8,      // the loader does not support a feature the file uses
};
inline constexpr std::uint8_t kLastImageDecodeStatus = 8;

/// What opening a PDF tells. A document locked by a user password is reported encrypted
/// and locked, and nothing else of it is touched.
struct PdfOpenFacts {
  bool opened = false;  // false: the reader could not open the document at all
  bool encrypted = false;
  bool locked = false;
  std::int32_t pageCount = 0;

  friend bool operator==(const PdfOpenFacts&, const PdfOpenFacts&) = default;
};

/// What the structural checks of a whole PDF found. The reader's facts come first; a
/// document it cannot open or that is locked is not checked further.
struct PdfStructureFacts {
  PdfOpenFacts open;
  /// Errors poppler reported while it opened the document and loaded every page.
  std::int32_t readerErrors = 0;
  /// Errors of qpdf's check (each a failure to read part of the document) and warnings
  /// (problems it worked around).
  std::int32_t checkerErrors = 0;
  std::int32_t checkerWarnings = 0;
  /// False when the check stopped at its time budget before reaching the end.
  bool complete = false;

  friend bool operator==(const PdfStructureFacts&, const PdfStructureFacts&) = default;
};

/// A compressed stream format the decompression test knows.
enum class CompressedFormat : std::uint8_t { gzip = 0, bzip2 = 1, xz = 2, zstd = 3 };
inline constexpr std::uint8_t kLastCompressedFormat = 3;

/// How a full decompression test ended.
enum class StreamTestOutcome : std::uint8_t {
  intact = 0,         // every byte decompressed and every checksum matched
  truncated = 1,      // the data ended inside the stream
  corrupt = 2,        // invalid data or a checksum that does not match
  outOfTime = 3,      // the time budget ran out before the end; nothing wrong so far
  tooMuchMemory = 4,  // the stream asks for more memory than the test allows
  unsupported = 5,    // the format's library could not be set up
};
inline constexpr std::uint8_t kLastStreamTestOutcome = 5;

struct StreamTestFacts {
  StreamTestOutcome outcome = StreamTestOutcome::unsupported;
  /// Bytes after the last stream that belong to none (zeros a tape or a tool appended).
  bool trailingData = false;
  std::int64_t expandedBytes = 0;

  friend bool operator==(const StreamTestFacts&, const StreamTestFacts&) = default;
};

/// What demuxing every packet of an audio or video file found.
struct MediaPacketFacts {
  bool opened = false;  // false: no demuxer took the file
  std::int32_t streams = 0;
  std::int64_t packets = 0;
  /// Read failures and errors the demuxer reported (a cut-off atom, a damaged header).
  std::int32_t readErrors = 0;
  /// Packets or pages whose checksum did not match.
  std::int32_t checksumErrors = 0;
  /// True when the end of the file was reached within the time budget.
  bool complete = false;

  friend bool operator==(const MediaPacketFacts&, const MediaPacketFacts&) = default;
};

/// How long a whole-file check may run before it answers with what it found so far.
struct CheckBudget {
  std::int32_t milliseconds = 0;
};
inline constexpr std::int32_t kMaxCheckBudgetMilliseconds = 10 * 60 * 1000;

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

/// The property map of image 0 of a file that holds at least one image: top-level facts
/// ("PixelWidth", "ColorModel", ...) and dictionaries ("{Exif}", "{TIFF}", "{GPS}", ...).
struct ImageProperties {
  std::int32_t imageCount = 0;
  MetadataValue::Map properties;

  friend bool operator==(const ImageProperties&, const ImageProperties&) = default;
};

// What a property map may hold; the worker keeps within these and the engine refuses a map
// that does not. Arrays and maps count towards the depth, and every value is one node.
inline constexpr int kMaxPropertyDepth = 6;
inline constexpr std::size_t kMaxPropertyNodes = 65536;
inline constexpr std::size_t kMaxPropertyKey = 1024;
inline constexpr std::size_t kMaxPropertyText = 64 * 1024;

/// One metadata item of a media file: the key as the demuxer names it ("title", "ENCODER")
/// and its value as stored, both UTF-8.
struct MediaTag {
  std::string key;
  std::string value;

  friend bool operator==(const MediaTag&, const MediaTag&) = default;
};

/// The samples that the first audio track's decoder delivers once it is open: its
/// "processing format", which is not the encoding stored in the file.
struct AudioProcessingFormat {
  double sampleRate = 0;
  std::uint32_t channelCount = 0;
  std::uint32_t bitsPerChannel = 0;
  /// Four characters, most significant byte first: "lpcm" for decoded linear PCM.
  std::uint32_t formatCode = 0;
  /// Sample frames, from the track's duration (no decode); -1 when the file does not say.
  std::int64_t frameCount = -1;

  friend bool operator==(const AudioProcessingFormat&, const AudioProcessingFormat&) = default;
};

/// The first video track of a media file, as its container and codec header describe it.
struct VideoTrackFacts {
  /// The stored picture size, before the display matrix turns it.
  double naturalWidth = 0;
  double naturalHeight = 0;
  /// Counterclockwise, as the display matrix says; 0 when there is none.
  double rotationDegrees = 0;
  float nominalFrameRate = 0;
  /// Bits per second; 0 when the container does not say.
  float estimatedDataRate = 0;
  /// Four characters, most significant byte first: the container's codec tag, else the one
  /// conventional for the codec; nothing when there is neither.
  std::optional<std::uint32_t> codec;
  /// FFmpeg's names ("bt709", "smpte2084"), each only when the file specifies it.
  std::optional<std::string> colorPrimaries;
  std::optional<std::string> transferFunction;
  std::optional<std::string> ycbcrMatrix;

  friend bool operator==(const VideoTrackFacts&, const VideoTrackFacts&) = default;
};

/// The first audio track of a media file, as stored (not as decoded).
struct AudioTrackFacts {
  /// Bits per second; 0 when the container does not say.
  float estimatedDataRate = 0;
  double sampleRate = 0;
  std::uint32_t channelCount = 0;

  friend bool operator==(const AudioTrackFacts&, const AudioTrackFacts&) = default;
};

/// What one probe of an audio or video file tells: the first audio track's decoded format
/// (or why there is none), the container's duration, its tracks and its tags.
struct MediaDescription {
  /// False when no demuxer took the file; then only `audioError` says anything.
  bool opened = false;
  /// Present exactly when `audioError` is empty.
  std::optional<AudioProcessingFormat> audioFormat;
  /// FFmpeg's text of why the audio could not be decoded: the file did not open, holds no
  /// audio track or has no decoder here.
  std::string audioError;
  /// Seconds; nothing when the container does not say.
  std::optional<double> duration;
  /// Pictures attached as cover art are not tracks.
  std::int32_t videoTrackCount = 0;
  std::int32_t audioTrackCount = 0;
  std::optional<VideoTrackFacts> firstVideoTrack;
  std::optional<AudioTrackFacts> firstAudioTrack;
  /// The container's tags, then each stream's, in stream order.
  std::vector<std::vector<MediaTag>> metadata;

  friend bool operator==(const MediaDescription&, const MediaDescription&) = default;
};

// What a media description may hold; the worker keeps within these (cutting a longer value
// at a character's end) and the engine refuses a description that does not.
inline constexpr std::int32_t kMaxMediaStreams = 1024;
inline constexpr std::size_t kMaxMediaTags = 4096;
inline constexpr std::size_t kMaxMediaTagKey = 1024;
inline constexpr std::size_t kMaxMediaTagValue = 64 * 1024;
inline constexpr std::size_t kMaxMediaText = 1024;  // an error text or a colour name
inline constexpr std::uint32_t kMaxMediaChannels = 1024;
inline constexpr std::uint32_t kMaxMediaBitsPerChannel = 64;
/// Sample rates and picture sides are 32-bit integers in every container.
inline constexpr double kMaxMediaDimension = 2147483647.0;
/// Frame rates and bitrates, far past any real one.
inline constexpr double kMaxMediaRate = 1e12;
/// A duration is at most this far from 0, either way.
inline constexpr double kMaxMediaSeconds = 1e12;

/// SHA-256 of image 0's pixels (rows top to bottom, R, G, B, A bytes), with its size.
struct PixelFingerprint {
  std::array<std::uint8_t, 32> digest{};
  std::int32_t width = 0;
  std::int32_t height = 0;

  friend bool operator==(const PixelFingerprint&, const PixelFingerprint&) = default;
};

/// The picture formats the clean copy can write; `other` is any other picture.
enum class ImageFormat : std::uint8_t {
  other = 0,
  jpeg = 1,
  png = 2,
  webp = 3,
  tiff = 4,
  gif = 5,
  heic = 6,
  avif = 7,
};
inline constexpr std::uint8_t kLastImageFormat = 7;

/// What a clean copy starts from: the format a loader found, how many images it holds and
/// the size of image 0 (as stored, before any orientation).
struct CleanCopySource {
  ImageFormat format = ImageFormat::other;
  std::int32_t imageCount = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;

  friend bool operator==(const CleanCopySource&, const CleanCopySource&) = default;
};

enum class CleanCopyKind : std::uint8_t {
  pixelSafe = 0,  // the container rewritten, the compressed image data kept as it is
  standard = 1,   // decoded and encoded again in the same format
};

struct CleanCopyRequest {
  CleanCopyKind kind = CleanCopyKind::pixelSafe;
  /// The encoder's quality, 1 to 100, for a standard copy; 0 leaves the encoder's default.
  std::int32_t quality = 0;
};

enum class CleanCopyStatus : std::uint8_t {
  written = 0,       // every byte of the copy went out in chunks
  refused = 1,       // no pixel-safe copy can be made of this file
  notOneImage = 2,   // the item holds no picture, or more than one
  undecodable = 3,   // image 0 does not decode (standard copy)
  unwritable = 4,    // there is no encoder for the format
  encodeFailed = 5,  // encoding failed on the way, or its bytes could not be sent
};
inline constexpr std::uint8_t kLastCleanCopyStatus = 5;

struct CleanCopyOutcome {
  CleanCopyStatus status = CleanCopyStatus::encodeFailed;
  /// The bytes sent in chunks; the engine checks them against what arrived.
  std::int64_t bytes = 0;

  friend bool operator==(const CleanCopyOutcome&, const CleanCopyOutcome&) = default;
};

/// A chunk frame carries at most this much of a clean copy.
inline constexpr std::size_t kMaxOutputChunk = 1024 * 1024;

void write(Writer& out, ImageDecodeStatus status);
void write(Writer& out, const PdfOpenFacts& facts);
void write(Writer& out, const PdfAnalysis& analysis);
void write(Writer& out, const PageRange& range);
void write(Writer& out, const std::optional<RgbaImage>& image);
void write(Writer& out, const PreviewBox& box);
void write(Writer& out, const ConfinementProbe& probe);
void write(Writer& out, const Confinement& confinement);
/// Dates and values of no plain kind travel as an integer (seconds since 1970) and as their
/// description; the worker makes neither.
void write(Writer& out, const std::optional<ImageProperties>& properties);
void write(Writer& out, const PdfStructureFacts& facts);
void write(Writer& out, CompressedFormat format);
void write(Writer& out, const StreamTestFacts& facts);
void write(Writer& out, const MediaPacketFacts& facts);
void write(Writer& out, const CheckBudget& budget);
void write(Writer& out, const MediaDescription& media);

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
/// Also fails on a map deeper, larger or with longer texts than the limits above allow, a
/// repeated key, a text that is not UTF-8 and a number that is not finite.
std::optional<std::optional<ImageProperties>> readImageProperties(Reader& in);
std::optional<PdfStructureFacts> readPdfStructureFacts(Reader& in);
std::optional<CompressedFormat> readCompressedFormat(Reader& in);
std::optional<StreamTestFacts> readStreamTestFacts(Reader& in);
std::optional<MediaPacketFacts> readMediaPacketFacts(Reader& in);
std::optional<CheckBudget> readCheckBudget(Reader& in);
/// Also fails on more tracks, tags or longer texts than the limits above allow, a text that
/// is not UTF-8, a number that is not finite or out of its range, a first track where the
/// count is 0, and an audio format together with an error (or neither).
std::optional<MediaDescription> readMediaDescription(Reader& in);

void write(Writer& out, const std::optional<PixelFingerprint>& fingerprint);
void write(Writer& out, const std::optional<CleanCopySource>& source);
void write(Writer& out, const CleanCopyRequest& request);
void write(Writer& out, const CleanCopyOutcome& outcome);
/// Also fails on a width or height below 1.
std::optional<std::optional<PixelFingerprint>> readPixelFingerprint(Reader& in);
/// Also fails on an unknown format, or an image count, width or height below 1.
std::optional<std::optional<CleanCopySource>> readCleanCopySource(Reader& in);
/// Also fails on an unknown kind or a quality outside 0 to 100.
std::optional<CleanCopyRequest> readCleanCopyRequest(Reader& in);
/// Also fails on an unknown status or a negative byte count.
std::optional<CleanCopyOutcome> readCleanCopyOutcome(Reader& in);

}  // namespace lumenscribe::platform::decoder
