// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/decoder_protocol.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <cmath>

#include "core/utf8.h"

namespace lumenscribe::platform::decoder {

namespace {

template <class Number>
void putLittleEndian(std::span<std::byte> out, Number value) {
  for (std::size_t i = 0; i < sizeof(Number); ++i) {
    out[i] = static_cast<std::byte>((static_cast<std::uint64_t>(value) >> (8 * i)) & 0xFF);
  }
}

template <class Number>
Number getLittleEndian(std::span<const std::byte> in) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < sizeof(Number); ++i) {
    value |= std::to_integer<std::uint64_t>(in[i]) << (8 * i);
  }
  return static_cast<Number>(value);
}

bool readBool(Reader& in, bool& value) {
  const std::uint8_t byte = in.u8();
  value = byte == 1;
  return in.ok() && byte <= 1;
}

// The kinds of value in a property map, as one byte before the value.
enum class PropertyKind : std::uint8_t { text = 1, integer = 2, real = 3, array = 4, map = 5 };

void writeProperty(Writer& out, const MetadataValue& value);

void writeText(Writer& out, std::string_view text) {
  out.u8(static_cast<std::uint8_t>(PropertyKind::text));
  out.text(text);
}

void writeInteger(Writer& out, std::int64_t number) {
  out.u8(static_cast<std::uint8_t>(PropertyKind::integer));
  out.i64(number);
}

void writeMap(Writer& out, const MetadataValue::Map& map) {
  out.u8(static_cast<std::uint8_t>(PropertyKind::map));
  out.u32(static_cast<std::uint32_t>(map.size()));
  for (const auto& [key, value] : map) {
    out.text(key);
    writeProperty(out, value);
  }
}

void writeProperty(Writer& out, const MetadataValue& value) {
  struct Visitor {
    Writer& out;
    void operator()(const std::string& text) const { writeText(out, text); }
    void operator()(std::int64_t number) const { writeInteger(out, number); }
    void operator()(double number) const {
      out.u8(static_cast<std::uint8_t>(PropertyKind::real));
      out.i64(std::bit_cast<std::int64_t>(number));
    }
    void operator()(const MetadataValue::Array& array) const {
      out.u8(static_cast<std::uint8_t>(PropertyKind::array));
      out.u32(static_cast<std::uint32_t>(array.size()));
      for (const auto& element : array) writeProperty(out, element);
    }
    void operator()(const MetadataValue::Map& map) const { writeMap(out, map); }
    void operator()(Timestamp date) const {
      writeInteger(
          out, std::chrono::duration_cast<std::chrono::seconds>(date.time_since_epoch()).count());
    }
    void operator()(const MetadataValue::Other& other) const { writeText(out, other.description); }
  };
  std::visit(Visitor{out}, value.variant());
}

// Reads one property map, counting every value against one budget so that no reply can
// make the engine build more than kMaxPropertyNodes values.
class PropertyReader {
 public:
  explicit PropertyReader(Reader& in) : in_(in) {}

  std::optional<MetadataValue::Map> map(int depth) {
    const std::uint32_t count = in_.u32();
    if (!in_.ok() || depth > kMaxPropertyDepth || count > nodesLeft_) return std::nullopt;
    MetadataValue::Map map;
    for (std::uint32_t i = 0; i < count; ++i) {
      std::string key = in_.text(kMaxPropertyKey);
      if (!in_.ok() || !utf8::isValid(key)) return std::nullopt;
      auto value = property(depth);
      if (!value || !map.try_emplace(std::move(key), std::move(*value)).second) {
        return std::nullopt;
      }
    }
    return map;
  }

 private:
  std::optional<MetadataValue> property(int depth) {
    if (nodesLeft_ == 0) return std::nullopt;
    --nodesLeft_;
    const auto kind = static_cast<PropertyKind>(in_.u8());
    switch (kind) {
      case PropertyKind::text: {
        std::string text = in_.text(kMaxPropertyText);
        if (!in_.ok() || !utf8::isValid(text)) return std::nullopt;
        return MetadataValue(std::move(text));
      }
      case PropertyKind::integer: {
        const std::int64_t number = in_.i64();
        if (!in_.ok()) return std::nullopt;
        return MetadataValue(number);
      }
      case PropertyKind::real: {
        const double number = std::bit_cast<double>(in_.i64());
        if (!in_.ok() || !std::isfinite(number)) return std::nullopt;
        return MetadataValue(number);
      }
      case PropertyKind::array: {
        const std::uint32_t count = in_.u32();
        if (!in_.ok() || depth + 1 > kMaxPropertyDepth || count > nodesLeft_) return std::nullopt;
        MetadataValue::Array array;
        array.reserve(count);
        for (std::uint32_t i = 0; i < count; ++i) {
          auto element = property(depth + 1);
          if (!element) return std::nullopt;
          array.push_back(std::move(*element));
        }
        return MetadataValue(std::move(array));
      }
      case PropertyKind::map: {
        auto nested = map(depth + 1);
        if (!nested) return std::nullopt;
        return MetadataValue(std::move(*nested));
      }
    }
    return std::nullopt;  // an unknown kind
  }

  Reader& in_;
  std::size_t nodesLeft_ = kMaxPropertyNodes;
};

void writeOptionalText(Writer& out, const std::optional<std::string>& text) {
  out.u8(text.has_value());
  if (text) out.text(*text);
}

void writeOptionalNumber(Writer& out, const std::optional<std::int64_t>& number) {
  out.u8(number.has_value());
  if (number) out.i64(*number);
}

bool readUtf8(Reader& in, std::size_t maxSize, std::string& text) {
  text = in.text(maxSize);
  return in.ok() && utf8::isValid(text);
}

bool readOptionalText(Reader& in, std::size_t maxSize, std::optional<std::string>& text) {
  bool present = false;
  if (!readBool(in, present)) return false;
  if (!present) return true;
  text.emplace();
  return readUtf8(in, maxSize, *text);
}

bool readOptionalNumber(Reader& in, std::optional<std::int64_t>& number) {
  bool present = false;
  if (!readBool(in, present)) return false;
  if (present) number = in.i64();
  return in.ok();
}

bool readExtent(Reader& in, double& extent) {
  extent = std::bit_cast<double>(in.i64());
  return in.ok() && std::isfinite(extent) && extent >= 0;
}

// ---- Media descriptions ----------------------------------------------------------------

void writeReal(Writer& out, double number) { out.i64(std::bit_cast<std::int64_t>(number)); }

// A finite number within [low, high]; nothing otherwise.
std::optional<double> readReal(Reader& in, double low, double high) {
  const double number = std::bit_cast<double>(in.i64());
  if (!in.ok() || !std::isfinite(number) || number < low || number > high) return std::nullopt;
  return number;
}

std::optional<float> readFloat(Reader& in, double low, double high) {
  const auto number = readReal(in, low, high);
  if (!number) return std::nullopt;
  return static_cast<float>(*number);
}

void writeAudioFormat(Writer& out, const AudioProcessingFormat& format) {
  writeReal(out, format.sampleRate);
  out.u32(format.channelCount);
  out.u32(format.bitsPerChannel);
  out.u32(format.formatCode);
  out.i64(format.frameCount);
}

std::optional<AudioProcessingFormat> readAudioFormat(Reader& in) {
  AudioProcessingFormat format;
  const auto sampleRate = readReal(in, 0, kMaxMediaDimension);
  format.channelCount = in.u32();
  format.bitsPerChannel = in.u32();
  format.formatCode = in.u32();
  format.frameCount = in.i64();
  if (!sampleRate || !in.ok() || format.channelCount > kMaxMediaChannels ||
      format.bitsPerChannel > kMaxMediaBitsPerChannel || format.frameCount < -1) {
    return std::nullopt;
  }
  format.sampleRate = *sampleRate;
  return format;
}

void writeVideoTrack(Writer& out, const VideoTrackFacts& track) {
  writeReal(out, track.naturalWidth);
  writeReal(out, track.naturalHeight);
  writeReal(out, track.rotationDegrees);
  writeReal(out, track.nominalFrameRate);
  writeReal(out, track.estimatedDataRate);
  out.u8(track.codec.has_value());
  if (track.codec) out.u32(*track.codec);
  writeOptionalText(out, track.colorPrimaries);
  writeOptionalText(out, track.transferFunction);
  writeOptionalText(out, track.ycbcrMatrix);
}

std::optional<VideoTrackFacts> readVideoTrack(Reader& in) {
  VideoTrackFacts track;
  const auto width = readReal(in, 0, kMaxMediaDimension);
  const auto height = readReal(in, 0, kMaxMediaDimension);
  const auto rotation = readReal(in, -360, 360);
  const auto frameRate = readFloat(in, 0, kMaxMediaRate);
  const auto dataRate = readFloat(in, 0, kMaxMediaRate);
  bool hasCodec = false;
  if (!width || !height || !rotation || !frameRate || !dataRate || !readBool(in, hasCodec)) {
    return std::nullopt;
  }
  if (hasCodec) track.codec = in.u32();
  for (std::optional<std::string>* name :
       {&track.colorPrimaries, &track.transferFunction, &track.ycbcrMatrix}) {
    if (!readOptionalText(in, kMaxMediaText, *name) || (*name && (*name)->empty())) {
      return std::nullopt;
    }
  }
  track.naturalWidth = *width;
  track.naturalHeight = *height;
  track.rotationDegrees = *rotation;
  track.nominalFrameRate = *frameRate;
  track.estimatedDataRate = *dataRate;
  return track;
}

void writeAudioTrack(Writer& out, const AudioTrackFacts& track) {
  writeReal(out, track.estimatedDataRate);
  writeReal(out, track.sampleRate);
  out.u32(track.channelCount);
}

std::optional<AudioTrackFacts> readAudioTrack(Reader& in) {
  AudioTrackFacts track;
  const auto dataRate = readFloat(in, 0, kMaxMediaRate);
  const auto sampleRate = readReal(in, 0, kMaxMediaDimension);
  track.channelCount = in.u32();
  if (!dataRate || !sampleRate || !in.ok() || track.channelCount > kMaxMediaChannels) {
    return std::nullopt;
  }
  track.estimatedDataRate = *dataRate;
  track.sampleRate = *sampleRate;
  return track;
}

}  // namespace

std::array<std::byte, kHeaderSize> encodeHeader(const FrameHeader& header) {
  std::array<std::byte, kHeaderSize> bytes{};
  putLittleEndian(std::span(bytes).subspan(0, 4), header.magic);
  putLittleEndian(std::span(bytes).subspan(4, 2), header.version);
  putLittleEndian(std::span(bytes).subspan(6, 2), header.kind);
  putLittleEndian(std::span(bytes).subspan(8, 4), header.length);
  putLittleEndian(std::span(bytes).subspan(12, 4), header.reserved);
  return bytes;
}

std::optional<FrameHeader> decodeHeader(std::span<const std::byte, kHeaderSize> bytes,
                                        std::uint32_t maxPayload) {
  FrameHeader header;
  header.magic = getLittleEndian<std::uint32_t>(bytes.subspan(0, 4));
  header.version = getLittleEndian<std::uint16_t>(bytes.subspan(4, 2));
  header.kind = getLittleEndian<std::uint16_t>(bytes.subspan(6, 2));
  header.length = getLittleEndian<std::uint32_t>(bytes.subspan(8, 4));
  header.reserved = getLittleEndian<std::uint32_t>(bytes.subspan(12, 4));
  if (header.magic != kMagic || header.version != kProtocolVersion) return std::nullopt;
  if (header.length > maxPayload || header.reserved != 0) return std::nullopt;
  return header;
}

void Writer::u32(std::uint32_t value) {
  std::byte out[4];
  putLittleEndian(std::span(out), value);
  bytes_.insert(bytes_.end(), out, out + 4);
}

void Writer::i64(std::int64_t value) {
  std::byte out[8];
  putLittleEndian(std::span(out), static_cast<std::uint64_t>(value));
  bytes_.insert(bytes_.end(), out, out + 8);
}

void Writer::bytes(std::span<const std::byte> value) {
  u32(static_cast<std::uint32_t>(value.size()));
  bytes_.insert(bytes_.end(), value.begin(), value.end());
}

void Writer::text(std::string_view value) { bytes(std::as_bytes(std::span(value))); }

std::span<const std::byte> Reader::take(std::size_t count) {
  if (!ok_ || count > bytes_.size()) {
    ok_ = false;
    return {};
  }
  const auto taken = bytes_.first(count);
  bytes_ = bytes_.subspan(count);
  return taken;
}

std::uint8_t Reader::u8() {
  const auto in = take(1);
  return in.empty() ? 0 : std::to_integer<std::uint8_t>(in[0]);
}

std::uint32_t Reader::u32() {
  const auto in = take(4);
  return in.empty() ? 0 : getLittleEndian<std::uint32_t>(in);
}

std::int64_t Reader::i64() {
  const auto in = take(8);
  return in.empty() ? 0 : static_cast<std::int64_t>(getLittleEndian<std::uint64_t>(in));
}

std::span<const std::byte> Reader::bytes(std::size_t maxSize) {
  const std::uint32_t size = u32();
  if (!ok_ || size > maxSize) {
    ok_ = false;
    return {};
  }
  return take(size);
}

std::string Reader::text(std::size_t maxSize) {
  const auto in = bytes(maxSize);
  return {reinterpret_cast<const char*>(in.data()), in.size()};
}

void write(Writer& out, ImageDecodeStatus status) { out.u8(static_cast<std::uint8_t>(status)); }

void write(Writer& out, const PdfOpenFacts& facts) {
  out.u8(facts.opened);
  out.u8(facts.encrypted);
  out.u8(facts.locked);
  out.i32(facts.pageCount);
}

void write(Writer& out, const PdfAnalysis& analysis) {
  out.u8(analysis.opened);
  out.u8(analysis.encrypted);
  out.u8(analysis.locked);
  out.i32(analysis.pageCount);
  out.i32(analysis.textPageCount);
  for (const auto* text : {&analysis.title, &analysis.author, &analysis.subject, &analysis.creator,
                           &analysis.producer}) {
    writeOptionalText(out, *text);
  }
  writeOptionalNumber(out, analysis.creationDate);
  writeOptionalNumber(out, analysis.modificationDate);
  out.u8(analysis.firstPageSize.has_value());
  if (analysis.firstPageSize) {
    out.i64(std::bit_cast<std::int64_t>(analysis.firstPageSize->width));
    out.i64(std::bit_cast<std::int64_t>(analysis.firstPageSize->height));
  }
  out.text(analysis.text);
  out.u8(analysis.textComplete);
}

void write(Writer& out, const PageRange& range) {
  out.i32(range.first);
  out.i32(range.count);
}

void write(Writer& out, const std::optional<RgbaImage>& image) {
  out.u8(image.has_value());
  if (!image) return;
  out.i32(image->width);
  out.i32(image->height);
  out.bytes(std::as_bytes(std::span(image->pixels)));
}

void write(Writer& out, const PreviewBox& box) {
  out.i32(box.maxWidth);
  out.i32(box.maxHeight);
}

void write(Writer& out, const ConfinementProbe& probe) {
  for (const std::int32_t value : {probe.openForWriting, probe.createSocket, probe.execute,
                                   probe.killParent, probe.readOutsideAllowed}) {
    out.i32(value);
  }
}

void write(Writer& out, const Confinement& confinement) {
  out.u8(confinement.noNewPrivileges);
  out.u8(confinement.seccomp);
  out.u8(confinement.landlock);
  out.u8(confinement.limits);
}

void write(Writer& out, const std::optional<ImageProperties>& properties) {
  out.u8(properties.has_value());
  if (!properties) return;
  out.i32(properties->imageCount);
  writeMap(out, properties->properties);
}

std::optional<ImageDecodeStatus> readImageDecodeStatus(Reader& in) {
  const std::uint8_t value = in.u8();
  if (!in.ok() || value > kLastImageDecodeStatus) return std::nullopt;
  return static_cast<ImageDecodeStatus>(value);
}

std::optional<PdfOpenFacts> readPdfOpenFacts(Reader& in) {
  PdfOpenFacts facts;
  if (!readBool(in, facts.opened) || !readBool(in, facts.encrypted) ||
      !readBool(in, facts.locked)) {
    return std::nullopt;
  }
  facts.pageCount = in.i32();
  if (!in.ok() || facts.pageCount < 0) return std::nullopt;
  return facts;
}

std::optional<PdfAnalysis> readPdfAnalysis(Reader& in) {
  PdfAnalysis analysis;
  if (!readBool(in, analysis.opened) || !readBool(in, analysis.encrypted) ||
      !readBool(in, analysis.locked)) {
    return std::nullopt;
  }
  analysis.pageCount = in.i32();
  analysis.textPageCount = in.i32();
  if (!in.ok() || analysis.pageCount < 0 || analysis.textPageCount < 0 ||
      analysis.textPageCount > analysis.pageCount) {
    return std::nullopt;
  }
  for (auto* text : {&analysis.title, &analysis.author, &analysis.subject, &analysis.creator,
                     &analysis.producer}) {
    if (!readOptionalText(in, kMaxPdfInfoText, *text)) return std::nullopt;
  }
  if (!readOptionalNumber(in, analysis.creationDate) ||
      !readOptionalNumber(in, analysis.modificationDate)) {
    return std::nullopt;
  }
  bool hasPageSize = false;
  if (!readBool(in, hasPageSize)) return std::nullopt;
  if (hasPageSize) {
    PageSize size;
    if (!readExtent(in, size.width) || !readExtent(in, size.height)) return std::nullopt;
    analysis.firstPageSize = size;
  }
  if (!readUtf8(in, kMaxPdfText, analysis.text) || !readBool(in, analysis.textComplete)) {
    return std::nullopt;
  }
  return analysis;
}

std::optional<PageRange> readPageRange(Reader& in) {
  PageRange range;
  range.first = in.i32();
  range.count = in.i32();
  if (!in.ok() || range.first < 0 || range.count < 0) return std::nullopt;
  return range;
}

std::optional<std::optional<RgbaImage>> readPreview(Reader& in, const PreviewBox& box) {
  bool present = false;
  if (!readBool(in, present)) return std::nullopt;
  if (!present) return std::optional<RgbaImage>();
  RgbaImage image;
  image.width = in.i32();
  image.height = in.i32();
  if (!in.ok() || image.width < 1 || image.height < 1 || image.width > box.maxWidth ||
      image.height > box.maxHeight) {
    return std::nullopt;
  }
  // Both sides are at most kMaxPreviewSide, so the product cannot overflow.
  const std::size_t expected = static_cast<std::size_t>(image.width) * image.height * 4;
  const auto pixels = in.bytes(expected);
  if (!in.ok() || pixels.size() != expected) return std::nullopt;
  image.pixels.resize(expected);
  std::transform(pixels.begin(), pixels.end(), image.pixels.begin(),
                 [](std::byte b) { return std::to_integer<std::uint8_t>(b); });
  return std::optional<RgbaImage>(std::move(image));
}

std::optional<PreviewBox> readPreviewBox(Reader& in) {
  PreviewBox box;
  box.maxWidth = in.i32();
  box.maxHeight = in.i32();
  if (!in.ok() || box.maxWidth < 1 || box.maxHeight < 1 || box.maxWidth > kMaxPreviewSide ||
      box.maxHeight > kMaxPreviewSide) {
    return std::nullopt;
  }
  return box;
}

std::optional<ConfinementProbe> readConfinementProbe(Reader& in) {
  ConfinementProbe probe;
  for (std::int32_t* value : {&probe.openForWriting, &probe.createSocket, &probe.execute,
                              &probe.killParent, &probe.readOutsideAllowed}) {
    *value = in.i32();
  }
  if (!in.ok()) return std::nullopt;
  return probe;
}

std::optional<Confinement> readConfinement(Reader& in) {
  Confinement confinement;
  if (!readBool(in, confinement.noNewPrivileges) || !readBool(in, confinement.seccomp) ||
      !readBool(in, confinement.landlock) || !readBool(in, confinement.limits)) {
    return std::nullopt;
  }
  return confinement;
}

std::optional<std::optional<ImageProperties>> readImageProperties(Reader& in) {
  bool present = false;
  if (!readBool(in, present)) return std::nullopt;
  if (!present) return std::optional<ImageProperties>();
  ImageProperties image;
  image.imageCount = in.i32();
  if (!in.ok() || image.imageCount < 1) return std::nullopt;
  if (static_cast<PropertyKind>(in.u8()) != PropertyKind::map) return std::nullopt;
  auto properties = PropertyReader(in).map(1);
  if (!properties) return std::nullopt;
  image.properties = std::move(*properties);
  return std::optional<ImageProperties>(std::move(image));
}

void write(Writer& out, const PdfStructureFacts& facts) {
  write(out, facts.open);
  out.i32(facts.readerErrors);
  out.i32(facts.checkerErrors);
  out.i32(facts.checkerWarnings);
  out.u8(facts.complete);
}

void write(Writer& out, CompressedFormat format) { out.u8(static_cast<std::uint8_t>(format)); }

void write(Writer& out, const StreamTestFacts& facts) {
  out.u8(static_cast<std::uint8_t>(facts.outcome));
  out.u8(facts.trailingData);
  out.i64(facts.expandedBytes);
}

void write(Writer& out, const MediaPacketFacts& facts) {
  out.u8(facts.opened);
  out.i32(facts.streams);
  out.i64(facts.packets);
  out.i32(facts.readErrors);
  out.i32(facts.checksumErrors);
  out.u8(facts.complete);
}

void write(Writer& out, const CheckBudget& budget) { out.i32(budget.milliseconds); }

std::optional<PdfStructureFacts> readPdfStructureFacts(Reader& in) {
  PdfStructureFacts facts;
  const auto open = readPdfOpenFacts(in);
  if (!open) return std::nullopt;
  facts.open = *open;
  facts.readerErrors = in.i32();
  facts.checkerErrors = in.i32();
  facts.checkerWarnings = in.i32();
  if (!readBool(in, facts.complete)) return std::nullopt;
  if (facts.readerErrors < 0 || facts.checkerErrors < 0 || facts.checkerWarnings < 0) {
    return std::nullopt;
  }
  return facts;
}

std::optional<CompressedFormat> readCompressedFormat(Reader& in) {
  const std::uint8_t value = in.u8();
  if (!in.ok() || value > kLastCompressedFormat) return std::nullopt;
  return static_cast<CompressedFormat>(value);
}

std::optional<StreamTestFacts> readStreamTestFacts(Reader& in) {
  StreamTestFacts facts;
  const std::uint8_t outcome = in.u8();
  if (!in.ok() || outcome > kLastStreamTestOutcome) return std::nullopt;
  facts.outcome = static_cast<StreamTestOutcome>(outcome);
  if (!readBool(in, facts.trailingData)) return std::nullopt;
  facts.expandedBytes = in.i64();
  if (!in.ok() || facts.expandedBytes < 0) return std::nullopt;
  return facts;
}

std::optional<MediaPacketFacts> readMediaPacketFacts(Reader& in) {
  MediaPacketFacts facts;
  if (!readBool(in, facts.opened)) return std::nullopt;
  facts.streams = in.i32();
  facts.packets = in.i64();
  facts.readErrors = in.i32();
  facts.checksumErrors = in.i32();
  if (!readBool(in, facts.complete)) return std::nullopt;
  if (facts.streams < 0 || facts.packets < 0 || facts.readErrors < 0 || facts.checksumErrors < 0) {
    return std::nullopt;
  }
  return facts;
}

std::optional<CheckBudget> readCheckBudget(Reader& in) {
  CheckBudget budget;
  budget.milliseconds = in.i32();
  if (!in.ok() || budget.milliseconds < 1 || budget.milliseconds > kMaxCheckBudgetMilliseconds) {
    return std::nullopt;
  }
  return budget;
}

void write(Writer& out, const MediaDescription& media) {
  out.u8(media.opened);
  out.u8(media.audioFormat.has_value());
  if (media.audioFormat) writeAudioFormat(out, *media.audioFormat);
  out.text(media.audioError);
  out.u8(media.duration.has_value());
  if (media.duration) writeReal(out, *media.duration);
  out.i32(media.videoTrackCount);
  out.i32(media.audioTrackCount);
  out.u8(media.firstVideoTrack.has_value());
  if (media.firstVideoTrack) writeVideoTrack(out, *media.firstVideoTrack);
  out.u8(media.firstAudioTrack.has_value());
  if (media.firstAudioTrack) writeAudioTrack(out, *media.firstAudioTrack);
  out.u32(static_cast<std::uint32_t>(media.metadata.size()));
  for (const auto& group : media.metadata) {
    out.u32(static_cast<std::uint32_t>(group.size()));
    for (const MediaTag& tag : group) {
      out.text(tag.key);
      out.text(tag.value);
    }
  }
}

std::optional<MediaDescription> readMediaDescription(Reader& in) {
  MediaDescription media;
  bool hasFormat = false;
  if (!readBool(in, media.opened) || !readBool(in, hasFormat)) return std::nullopt;
  if (hasFormat && !(media.audioFormat = readAudioFormat(in))) return std::nullopt;
  if (!readUtf8(in, kMaxMediaText, media.audioError) || hasFormat != media.audioError.empty()) {
    return std::nullopt;
  }
  bool hasDuration = false;
  if (!readBool(in, hasDuration)) return std::nullopt;
  if (hasDuration) {
    media.duration = readReal(in, -kMaxMediaSeconds, kMaxMediaSeconds);
    if (!media.duration) return std::nullopt;
  }

  media.videoTrackCount = in.i32();
  media.audioTrackCount = in.i32();
  bool hasVideo = false;
  if (!in.ok() || media.videoTrackCount < 0 || media.videoTrackCount > kMaxMediaStreams ||
      media.audioTrackCount < 0 || media.audioTrackCount > kMaxMediaStreams ||
      !readBool(in, hasVideo) || hasVideo != (media.videoTrackCount > 0)) {
    return std::nullopt;
  }
  if (hasVideo && !(media.firstVideoTrack = readVideoTrack(in))) return std::nullopt;
  bool hasAudio = false;
  if (!readBool(in, hasAudio) || hasAudio != (media.audioTrackCount > 0)) return std::nullopt;
  if (hasAudio && !(media.firstAudioTrack = readAudioTrack(in))) return std::nullopt;
  // A file that did not open has no tracks to describe.
  if (!media.opened && (hasVideo || hasAudio || hasFormat || hasDuration)) return std::nullopt;

  // The container's group and one per stream, and one budget for the tags of all of them.
  const std::uint32_t groups = in.u32();
  if (!in.ok() || groups > static_cast<std::uint32_t>(kMaxMediaStreams) + 1) return std::nullopt;
  std::size_t tagsLeft = kMaxMediaTags;
  media.metadata.resize(groups);
  for (auto& group : media.metadata) {
    const std::uint32_t count = in.u32();
    if (!in.ok() || count > tagsLeft) return std::nullopt;
    tagsLeft -= count;
    group.resize(count);
    for (MediaTag& tag : group) {
      if (!readUtf8(in, kMaxMediaTagKey, tag.key) || tag.key.empty() ||
          !readUtf8(in, kMaxMediaTagValue, tag.value)) {
        return std::nullopt;
      }
    }
  }
  return media;
}

void write(Writer& out, const std::optional<PixelFingerprint>& fingerprint) {
  out.u8(fingerprint.has_value());
  if (!fingerprint) return;
  out.raw(std::as_bytes(std::span(fingerprint->digest)));
  out.i32(fingerprint->width);
  out.i32(fingerprint->height);
}

void write(Writer& out, const std::optional<CleanCopySource>& source) {
  out.u8(source.has_value());
  if (!source) return;
  out.u8(static_cast<std::uint8_t>(source->format));
  out.i32(source->imageCount);
  out.i32(source->width);
  out.i32(source->height);
}

void write(Writer& out, const CleanCopyRequest& request) {
  out.u8(static_cast<std::uint8_t>(request.kind));
  out.i32(request.quality);
}

void write(Writer& out, const CleanCopyOutcome& outcome) {
  out.u8(static_cast<std::uint8_t>(outcome.status));
  out.i64(outcome.bytes);
}

std::optional<std::optional<PixelFingerprint>> readPixelFingerprint(Reader& in) {
  bool present = false;
  if (!readBool(in, present)) return std::nullopt;
  if (!present) return std::optional<PixelFingerprint>();
  PixelFingerprint fingerprint;
  for (auto& byte : fingerprint.digest) byte = in.u8();
  fingerprint.width = in.i32();
  fingerprint.height = in.i32();
  if (!in.ok() || fingerprint.width < 1 || fingerprint.height < 1) return std::nullopt;
  return std::optional<PixelFingerprint>(fingerprint);
}

std::optional<std::optional<CleanCopySource>> readCleanCopySource(Reader& in) {
  bool present = false;
  if (!readBool(in, present)) return std::nullopt;
  if (!present) return std::optional<CleanCopySource>();
  CleanCopySource source;
  const std::uint8_t format = in.u8();
  source.imageCount = in.i32();
  source.width = in.i32();
  source.height = in.i32();
  if (!in.ok() || format > kLastImageFormat || source.imageCount < 1 || source.width < 1 ||
      source.height < 1) {
    return std::nullopt;
  }
  source.format = static_cast<ImageFormat>(format);
  return std::optional<CleanCopySource>(source);
}

std::optional<CleanCopyRequest> readCleanCopyRequest(Reader& in) {
  CleanCopyRequest request;
  const std::uint8_t kind = in.u8();
  request.quality = in.i32();
  if (!in.ok() || kind > static_cast<std::uint8_t>(CleanCopyKind::standard) ||
      request.quality < 0 || request.quality > 100) {
    return std::nullopt;
  }
  request.kind = static_cast<CleanCopyKind>(kind);
  return request;
}

std::optional<CleanCopyOutcome> readCleanCopyOutcome(Reader& in) {
  CleanCopyOutcome outcome;
  const std::uint8_t status = in.u8();
  outcome.bytes = in.i64();
  if (!in.ok() || status > kLastCleanCopyStatus || outcome.bytes < 0) return std::nullopt;
  outcome.status = static_cast<CleanCopyStatus>(status);
  return outcome;
}

}  // namespace lumenscribe::platform::decoder
