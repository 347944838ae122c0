// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/media_description.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "core/path_text.h"
#include "decoder/avio_source.h"

namespace lumenscribe::decoder {

namespace {

using namespace platform::decoder;

// Four characters, most significant byte first, as the engine shows a format code.
constexpr std::uint32_t fourCharCode(std::string_view text) {
  return (static_cast<std::uint32_t>(static_cast<unsigned char>(text[0])) << 24) |
         (static_cast<std::uint32_t>(static_cast<unsigned char>(text[1])) << 16) |
         (static_cast<std::uint32_t>(static_cast<unsigned char>(text[2])) << 8) |
         static_cast<std::uint32_t>(static_cast<unsigned char>(text[3]));
}

// FourCCs that files of these codecs usually carry where the container names no tag
// (Matroska, WebM, raw streams).
struct ConventionalTag {
  AVCodecID codec;
  std::uint32_t code;
};
constexpr std::array kConventionalTags = {
    ConventionalTag{AV_CODEC_ID_H264, fourCharCode("avc1")},
    ConventionalTag{AV_CODEC_ID_HEVC, fourCharCode("hvc1")},
    ConventionalTag{AV_CODEC_ID_VP8, fourCharCode("vp08")},
    ConventionalTag{AV_CODEC_ID_VP9, fourCharCode("vp09")},
    ConventionalTag{AV_CODEC_ID_AV1, fourCharCode("av01")},
    ConventionalTag{AV_CODEC_ID_MPEG4, fourCharCode("mp4v")},
    ConventionalTag{AV_CODEC_ID_MJPEG, fourCharCode("jpeg")},
    ConventionalTag{AV_CODEC_ID_PRORES, fourCharCode("apcn")},
    ConventionalTag{AV_CODEC_ID_AAC, fourCharCode("mp4a")},
};

struct CodecContextFree {
  void operator()(AVCodecContext* context) const noexcept { avcodec_free_context(&context); }
};

// UTF-8 of at most `maxSize` bytes: ill-formed sequences become U+FFFD, and a longer text
// is cut where a character ends.
std::string validText(const char* text, std::size_t maxSize) {
  if (text == nullptr) return {};
  std::string result = validUtf8(text);
  if (result.size() > maxSize) {
    std::size_t end = maxSize;
    while (end > 0 && (static_cast<unsigned char>(result[end]) & 0xC0) == 0x80) --end;
    result.resize(end);
  }
  return result;
}

// Never empty: the engine tells a failure by its text.
std::string errorText(int code) {
  char text[AV_ERROR_MAX_STRING_SIZE] = {};
  std::string message;
  if (av_strerror(code, text, sizeof text) == 0) message = validText(text, kMaxMediaText);
  return message.empty() ? "Error number " + std::to_string(code) : message;
}

bool isAttachedPicture(const AVStream* stream) {
  return (stream->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
}

bool isVideoTrack(const AVStream* stream) {
  return stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !isAttachedPicture(stream);
}

bool isAudioTrack(const AVStream* stream) {
  return stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
}

// Each entry of a dictionary, in its order, while the budget lasts.
std::vector<MediaTag> tagsOf(const AVDictionary* dictionary, std::size_t& budget) {
  std::vector<MediaTag> tags;
  const AVDictionaryEntry* entry = nullptr;
  while (budget > 0 &&
         (entry = av_dict_get(dictionary, "", entry, AV_DICT_IGNORE_SUFFIX)) != nullptr) {
    std::string key = validText(entry->key, kMaxMediaTagKey);
    if (key.empty()) continue;
    tags.push_back({std::move(key), validText(entry->value, kMaxMediaTagValue)});
    --budget;
  }
  return tags;
}

std::uint32_t channelCountOf(const AVChannelLayout& layout) {
  return static_cast<std::uint32_t>(
      std::clamp(layout.nb_channels, 0, static_cast<int>(kMaxMediaChannels)));
}

std::optional<double> rateOf(AVRational rate) {
  if (rate.num <= 0 || rate.den <= 0) return std::nullopt;
  return av_q2d(rate);
}

float dataRateOf(const AVCodecParameters* parameters) {
  if (parameters->bit_rate <= 0) return 0;
  return static_cast<float>(std::min<double>(static_cast<double>(parameters->bit_rate), 1e12));
}

// Counterclockwise degrees in (-360, 360); 0 without a display matrix or with a degenerate one.
double rotationOf(const AVStream* stream) {
  std::size_t size = 0;
  const std::uint8_t* matrix = av_stream_get_side_data(stream, AV_PKT_DATA_DISPLAYMATRIX, &size);
  if (matrix == nullptr || size < 9 * sizeof(std::int32_t)) return 0;
  std::int32_t values[9];
  std::copy_n(matrix, sizeof values, reinterpret_cast<std::uint8_t*>(values));
  const double degrees = av_display_rotation_get(values);
  return std::isfinite(degrees) ? std::fmod(degrees, 360.0) : 0;
}

std::optional<std::uint32_t> codecCodeOf(const AVCodecParameters* parameters) {
  if (parameters->codec_tag != 0) {
    // FFmpeg keeps a tag's first character in the lowest byte.
    return __builtin_bswap32(parameters->codec_tag);
  }
  for (const ConventionalTag& tag : kConventionalTags) {
    if (tag.codec == parameters->codec_id) return tag.code;
  }
  const AVCodecTag* const tables[] = {avformat_get_mov_video_tags(), avformat_get_riff_video_tags(),
                                      nullptr};
  const unsigned int tag = av_codec_get_tag(tables, parameters->codec_id);
  if (tag != 0) return __builtin_bswap32(tag);
  return std::nullopt;
}

// An enum field of FFmpeg's as the integer it holds, which may lie outside the enum.
template <class Code>
int codeOf(const Code& field) {
  static_assert(sizeof(Code) == sizeof(int));
  int value = 0;
  std::memcpy(&value, &field, sizeof value);
  return value;
}

// The name FFmpeg gives a colour code the file specifies; nothing for one left unspecified,
// reserved or unknown. FFmpeg copies these codes from the file into its enums unchecked, so
// they are read as the integers they are and named only within the enum's range.
template <class Code, class Name>
std::optional<std::string> colourName(const Code& field, int unspecified, int count, Name name) {
  const int value = codeOf(field);
  if (value == unspecified || value < 0 || value >= count) return std::nullopt;
  const char* text = name(static_cast<Code>(value));
  if (text == nullptr || std::string_view(text) == "reserved") return std::nullopt;
  return validText(text, kMaxMediaText);
}

VideoTrackFacts videoTrackOf(const AVStream* stream) {
  const AVCodecParameters* parameters = stream->codecpar;
  VideoTrackFacts track;
  track.naturalWidth = std::max(parameters->width, 0);
  track.naturalHeight = std::max(parameters->height, 0);
  track.rotationDegrees = rotationOf(stream);
  track.nominalFrameRate = static_cast<float>(
      rateOf(stream->avg_frame_rate).value_or(rateOf(stream->r_frame_rate).value_or(0)));
  track.estimatedDataRate = dataRateOf(parameters);
  track.codec = codecCodeOf(parameters);
  track.colorPrimaries = colourName(parameters->color_primaries, AVCOL_PRI_UNSPECIFIED,
                                    AVCOL_PRI_NB, av_color_primaries_name);
  track.transferFunction = colourName(parameters->color_trc, AVCOL_TRC_UNSPECIFIED, AVCOL_TRC_NB,
                                      av_color_transfer_name);
  track.ycbcrMatrix =
      colourName(parameters->color_space, AVCOL_SPC_UNSPECIFIED, AVCOL_SPC_NB, av_color_space_name);
  return track;
}

AudioTrackFacts audioTrackOf(const AVStream* stream) {
  const AVCodecParameters* parameters = stream->codecpar;
  AudioTrackFacts track;
  track.estimatedDataRate = dataRateOf(parameters);
  track.sampleRate = std::max(parameters->sample_rate, 0);
  track.channelCount = channelCountOf(parameters->ch_layout);
  return track;
}

// Sample frames of the track at `sampleRate`: from the track's own duration, else the
// container's; -1 when neither is known.
std::int64_t frameCountOf(const AVFormatContext* format, const AVStream* stream, int sampleRate) {
  if (sampleRate <= 0) return -1;
  const AVRational perSample{1, sampleRate};
  std::int64_t frames = -1;
  if (stream->duration != AV_NOPTS_VALUE && stream->duration > 0 && stream->time_base.num > 0 &&
      stream->time_base.den > 0) {
    frames = av_rescale_q(stream->duration, stream->time_base, perSample);
  } else if (format->duration != AV_NOPTS_VALUE && format->duration > 0) {
    frames = av_rescale_q(format->duration, AV_TIME_BASE_Q, perSample);
  }
  return frames >= 0 ? frames : -1;  // av_rescale_q gives INT64_MIN on overflow
}

// What the first audio track's decoder delivers once open, or FFmpeg's code of why it
// cannot be opened.
std::variant<AudioProcessingFormat, int> processingFormatOf(const AVFormatContext* format,
                                                            const AVStream* stream) {
  if (stream == nullptr) return AVERROR_STREAM_NOT_FOUND;
  const AVCodec* codec = avcodec_find_decoder(stream->codecpar->codec_id);
  if (codec == nullptr) return AVERROR_DECODER_NOT_FOUND;
  const std::unique_ptr<AVCodecContext, CodecContextFree> context(avcodec_alloc_context3(codec));
  if (!context) return AVERROR(ENOMEM);
  if (const int copied = avcodec_parameters_to_context(context.get(), stream->codecpar);
      copied < 0) {
    return copied;
  }
  context->thread_count = 1;  // the worker decodes nothing here, and starts no threads for it
  if (const int opened = avcodec_open2(context.get(), codec, nullptr); opened < 0) return opened;

  // Most decoders settle their output format when they open; the few that wait for the
  // first frame delivered it to the probe.
  const auto known = [](int format) { return format >= 0 && format < AV_SAMPLE_FMT_NB; };
  int sampleFormat = codeOf(context->sample_fmt);
  if (!known(sampleFormat)) sampleFormat = stream->codecpar->format;
  AudioProcessingFormat processing;
  processing.sampleRate = std::max(context->sample_rate, 0);
  processing.channelCount = channelCountOf(context->ch_layout);
  const int bytes =
      known(sampleFormat) ? av_get_bytes_per_sample(static_cast<AVSampleFormat>(sampleFormat)) : 0;
  processing.bitsPerChannel = static_cast<std::uint32_t>(std::clamp(bytes * 8, 0, 64));
  processing.formatCode = fourCharCode("lpcm");
  processing.frameCount = frameCountOf(format, stream, context->sample_rate);
  return processing;
}

}  // namespace

MediaDescription describeMedia(const ItemBytes& item) {
  MediaDescription media;
  int openError = 0;
  const auto input = MediaInput::open(item, nullptr, &openError);
  if (!input) {
    media.audioError = errorText(openError);
    return media;
  }
  media.opened = true;
  AVFormatContext* format = input->format();
  // Fills in what the headers leave out by reading (and where needed decoding) the first
  // packets, within FFmpeg's probe size.
  const int probed = avformat_find_stream_info(format, nullptr);

  if (format->duration != AV_NOPTS_VALUE) {
    const double seconds = static_cast<double>(format->duration) / AV_TIME_BASE;
    if (std::abs(seconds) <= kMaxMediaSeconds) media.duration = seconds;
  }
  const unsigned int streamCount =
      std::min(format->nb_streams, static_cast<unsigned int>(kMaxMediaStreams));
  const AVStream* firstAudio = nullptr;
  for (unsigned int i = 0; i < streamCount; ++i) {
    const AVStream* stream = format->streams[i];
    if (isVideoTrack(stream)) {
      if (media.videoTrackCount++ == 0) media.firstVideoTrack = videoTrackOf(stream);
    } else if (isAudioTrack(stream)) {
      if (media.audioTrackCount++ == 0) {
        media.firstAudioTrack = audioTrackOf(stream);
        firstAudio = stream;
      }
    }
  }

  if (probed < 0) {
    media.audioError = errorText(probed);
  } else {
    auto processing = processingFormatOf(format, firstAudio);
    if (const int* error = std::get_if<int>(&processing)) {
      media.audioError = errorText(*error);
    } else {
      media.audioFormat = std::get<AudioProcessingFormat>(processing);
    }
  }

  std::size_t budget = kMaxMediaTags;
  media.metadata.push_back(tagsOf(format->metadata, budget));
  for (unsigned int i = 0; i < streamCount; ++i) {
    media.metadata.push_back(tagsOf(format->streams[i]->metadata, budget));
  }
  return media;
}

}  // namespace lumenscribe::decoder
