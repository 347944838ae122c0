// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/exif_properties.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <climits>
#include <cmath>
#include <cstdio>
#include <exiv2/exiv2.hpp>
#include <exiv2/webpimage.hpp>
#include <memory>
#include <optional>
#include <utility>

#include "decoder/exif_properties_tables.h"
#include "platform/decoder_protocol.h"

namespace lumenscribe::decoder {

namespace {

using Map = MetadataValue::Map;
using Array = MetadataValue::Array;
using platform::decoder::kMaxPropertyKey;
using platform::decoder::kMaxPropertyText;

// Longer arrays are data (strip offsets, tone curves), not facts anyone reads.
constexpr long kMaxElements = 256;
// Maker notes are full of private tables; only short values say something.
constexpr long kMaxMakerNoteElements = 64;

// Formats Exiv2 knows as pictures. Sidecars, EPS, movies and TGA (which Exiv2 recognises by
// little more than its name) are not images here.
constexpr std::array kPictureTypes = {
    Exiv2::ImageType::jpeg, Exiv2::ImageType::cr2, Exiv2::ImageType::crw,  Exiv2::ImageType::tiff,
    Exiv2::ImageType::mrw,  Exiv2::ImageType::orf, Exiv2::ImageType::raf,  Exiv2::ImageType::rw2,
    Exiv2::ImageType::png,  Exiv2::ImageType::pgf, Exiv2::ImageType::psd,  Exiv2::ImageType::bmp,
    Exiv2::ImageType::gif,  Exiv2::ImageType::jp2, Exiv2::ImageType::webp, Exiv2::ImageType::bmff,
};

std::size_t nodesIn(const MetadataValue& value) {
  std::size_t nodes = 1;
  if (const auto* array = value.get<Array>()) {
    for (const auto& element : *array) nodes += nodesIn(element);
  } else if (const auto* map = value.get<Map>()) {
    for (const auto& [key, element] : *map) nodes += nodesIn(element);
  }
  return nodes;
}

void put(Map& map, std::string key, std::optional<MetadataValue> value, PropertyBudget& budget) {
  if (!value || key.empty() || key.size() > kMaxPropertyKey) return;
  if (!budget.take(nodesIn(*value))) return;
  map.insert_or_assign(std::move(key), std::move(*value));
}

// Windows' XP tags: UTF-16LE code units, ending at the first zero unit.
std::string utf16Text(const Exiv2::Value& value) {
  std::string bytes(static_cast<std::size_t>(value.size()), '\0');
  value.copy(reinterpret_cast<Exiv2::byte*>(bytes.data()), Exiv2::littleEndian);
  std::string text;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    std::uint32_t unit = static_cast<unsigned char>(bytes[i]) |
                         static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i + 1])) << 8;
    if (unit == 0) break;
    if (unit >= 0xD800 && unit <= 0xDBFF && i + 3 < bytes.size()) {
      const std::uint32_t low = static_cast<unsigned char>(bytes[i + 2]) |
                                static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i + 3]))
                                    << 8;
      if (low >= 0xDC00 && low <= 0xDFFF) {
        unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
        i += 2;
      }
    }
    appendCodePoint(text, unit);
  }
  return propertyText(text);
}

template <class Pair>
std::optional<double> ratio(const Pair& pair) {
  if (pair.second == 0) return std::nullopt;  // no number: "n/0" reads as nothing
  return static_cast<double>(pair.first) / static_cast<double>(pair.second);
}

// The rationals of a value, exactly as stored (toRational would turn unsigned numerators
// past 2^31 negative); nothing when the value holds none.
std::optional<std::vector<double>> rationals(const Exiv2::Value& value, long maxCount) {
  std::vector<double> numbers;
  const auto collect = [&](const auto& pairs) {
    if (pairs.empty() || static_cast<long>(pairs.size()) > maxCount) return false;
    for (const auto& pair : pairs) {
      const auto number = ratio(pair);
      if (!number) return false;
      numbers.push_back(*number);
    }
    return true;
  };
  if (const auto* unsignedPairs = dynamic_cast<const Exiv2::URationalValue*>(&value)) {
    if (!collect(unsignedPairs->value_)) return std::nullopt;
  } else if (const auto* signedPairs = dynamic_cast<const Exiv2::RationalValue*>(&value)) {
    if (!collect(signedPairs->value_)) return std::nullopt;
  } else {
    return std::nullopt;
  }
  return numbers;
}

std::optional<MetadataValue> numberAt(const Exiv2::Value& value, long index) {
  switch (value.typeId()) {
    case Exiv2::tiffFloat:
    case Exiv2::tiffDouble: {
      const double number = value.toFloat(index);
      if (!std::isfinite(number)) return std::nullopt;
      return MetadataValue(number);
    }
    default: return MetadataValue(static_cast<std::int64_t>(value.toLong(index)));
  }
}

// Numbers stay numbers: integers as integers, rationals and floats as floating point; one
// number alone is a scalar unless `forceArray`.
std::optional<MetadataValue> numbers(const Exiv2::Value& value, long maxCount, bool forceArray) {
  const long count = value.count();
  if (count < 1 || count > maxCount) return std::nullopt;
  Array array;
  if (value.typeId() == Exiv2::unsignedRational || value.typeId() == Exiv2::signedRational) {
    const auto parts = rationals(value, maxCount);
    if (!parts) return std::nullopt;
    for (const double part : *parts) array.emplace_back(part);
  } else {
    for (long i = 0; i < count; ++i) {
      auto number = numberAt(value, i);
      if (!number) return std::nullopt;
      array.push_back(std::move(*number));
    }
  }
  if (array.size() == 1 && !forceArray) return std::move(array.front());
  return MetadataValue(std::move(array));
}

std::string trimmedTrailingSpaces(std::string text) {
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

std::string twoDigits(int number) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "%02d", number);
  return buffer;
}

// Any value as its plainest property: text, numbers, or nothing for a blob.
std::optional<MetadataValue> plainValue(const Exiv2::Value& value, long maxCount,
                                        bool forceArray = false) {
  if (const auto* comment = dynamic_cast<const Exiv2::CommentValue*>(&value)) {
    return MetadataValue(trimmedTrailingSpaces(propertyText(comment->comment())));
  }
  if (const auto* date = dynamic_cast<const Exiv2::DateValue*>(&value)) {
    const auto& d = date->getDate();
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%04d:%02d:%02d", d.year, d.month, d.day);
    return MetadataValue(std::string(buffer));
  }
  if (const auto* time = dynamic_cast<const Exiv2::TimeValue*>(&value)) {
    const auto& t = time->getTime();
    const bool behind = t.tzHour < 0 || t.tzMinute < 0;
    return MetadataValue(twoDigits(t.hour) + ":" + twoDigits(t.minute) + ":" + twoDigits(t.second) +
                         (behind ? "-" : "+") + twoDigits(std::abs(t.tzHour)) + ":" +
                         twoDigits(std::abs(t.tzMinute)));
  }
  switch (value.typeId()) {
    case Exiv2::asciiString:
    case Exiv2::string:
    case Exiv2::xmpText: return MetadataValue(propertyText(value.toString()));
    case Exiv2::undefined:
    case Exiv2::unsignedByte:
    case Exiv2::signedByte:
    case Exiv2::unsignedShort:
    case Exiv2::signedShort:
    case Exiv2::unsignedLong:
    case Exiv2::signedLong:
    case Exiv2::unsignedRational:
    case Exiv2::signedRational:
    case Exiv2::tiffFloat:
    case Exiv2::tiffDouble:
    case Exiv2::tiffIfd: return numbers(value, maxCount, forceArray);
    default: return std::nullopt;
  }
}

// Degrees, minutes and seconds (any of them may be missing at the end) as unsigned decimal
// degrees; nothing when a part has no number. Text that a camera wrote instead stays text.
std::optional<MetadataValue> degrees(const Exiv2::Value& value) {
  if (value.typeId() != Exiv2::unsignedRational && value.typeId() != Exiv2::signedRational) {
    return plainValue(value, kMaxElements);
  }
  const auto parts = rationals(value, kMaxElements);
  if (!parts) return std::nullopt;
  double total = 0;
  double unit = 1;
  for (std::size_t i = 0; i < parts->size() && i < 3; ++i, unit *= 60) total += (*parts)[i] / unit;
  if (!std::isfinite(total)) return std::nullopt;
  return MetadataValue(total);
}

// Hours, minutes and seconds as "hh:mm:ss" with the fraction of a second that is there
// ("22:42:10.5"), carried over the way exiftool does.
std::optional<MetadataValue> timeStamp(const Exiv2::Value& value) {
  const auto parts = rationals(value, 3);
  if (!parts) return plainValue(value, kMaxElements);
  double seconds = 0;
  for (std::size_t i = 0; i < parts->size(); ++i) {
    seconds += (*parts)[i] * (i == 0 ? 3600 : i == 1 ? 60 : 1);
  }
  if (!std::isfinite(seconds) || seconds < 0 || seconds > 1e9) return std::nullopt;
  auto hours = static_cast<long long>(seconds / 3600);
  seconds -= static_cast<double>(hours) * 3600;
  auto minutes = static_cast<long long>(seconds / 60);
  seconds -= static_cast<double>(minutes) * 60;
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%012.9f", seconds);
  std::string secondsText = buffer;
  if (secondsText >= "60") {
    secondsText = "00";
    if (++minutes >= 60) {
      minutes -= 60;
      ++hours;
    }
  } else {
    while (secondsText.back() == '0') secondsText.pop_back();
    if (secondsText.back() == '.') secondsText.pop_back();
  }
  std::snprintf(buffer, sizeof buffer, "%02lld:%02lld:", hours, minutes);
  return MetadataValue(buffer + secondsText);
}

std::string rawBytes(const Exiv2::Value& value) {
  std::string bytes(static_cast<std::size_t>(value.size()), '\0');
  value.copy(reinterpret_cast<Exiv2::byte*>(bytes.data()), Exiv2::littleEndian);
  return bytes;
}

// Photographer and editor, each ended by a NUL, become two lines; blanks that fill a field
// are dropped (as exiftool reads it).
std::string copyrightText(const Exiv2::Value& value) {
  std::string text = rawBytes(value);
  const auto dropBlanksBefore = [&](std::size_t at) {
    std::size_t start = at;
    while (start > 0 && text[start - 1] == ' ') --start;
    return start;
  };
  if (const std::size_t first = text.find('\0'); first != std::string::npos) {
    const std::size_t start = dropBlanksBefore(first);
    text.replace(start, first + 1 - start, "\n");
    if (const std::size_t second = text.find('\0'); second != std::string::npos) {
      text.resize(dropBlanksBefore(second));
    }
  }
  if (!text.empty() && text.back() == '\n') text.pop_back();
  return propertyText(text);
}

std::string withoutTrailingSpace(std::string text) {
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())) != 0) {
    text.pop_back();
  }
  return text;
}

// The APEX values as seconds and f-numbers, the way exiftool reads them.
std::optional<MetadataValue> fromApex(const std::string& name, std::optional<MetadataValue> apex) {
  const double* value = apex ? apex->get<double>() : nullptr;
  if (value == nullptr) return apex;
  double converted = 0;
  if (name == "ShutterSpeedValue") {
    converted = std::abs(*value) < 100 ? std::exp2(-*value) : 0;
  } else {
    converted = std::exp2(*value / 2);
  }
  if (!std::isfinite(converted)) return std::nullopt;
  return MetadataValue(converted);
}

void addExifTag(const std::string& name, const Exiv2::Value& value, Map& exif,
                PropertyBudget& budget) {
  if (isUnreadExifTag(name)) return;
  std::optional<MetadataValue> converted;
  if (isVersionTag(name)) {
    converted = propertyText(rawBytes(value));
  } else if (isBlankFilledTag(name)) {
    converted = plainValue(value, kMaxElements);
    if (const auto* text = converted ? converted->get<std::string>() : nullptr) {
      converted = withoutTrailingSpace(*text);
    }
  } else if (isApexTag(name)) {
    converted = fromApex(name, plainValue(value, kMaxElements));
  } else {
    converted = plainValue(value, kMaxElements, name == "ISOSpeedRatings");
  }
  put(exif, std::string(exifKeyFor(name)), std::move(converted), budget);
}

void addTiffTag(const std::string& name, const Exiv2::Value& value, Map& tiff,
                PropertyBudget& budget) {
  if (isStructuralTiffTag(name)) return;
  std::optional<MetadataValue> converted;
  if (isWindowsTextTag(name)) {
    converted = utf16Text(value);
  } else if (name == "Copyright" && value.typeId() == Exiv2::asciiString) {
    converted = copyrightText(value);
  } else {
    converted = plainValue(value, kMaxElements);
    // Fields that cameras fill with blanks when they have nothing to say.
    const auto* text = converted ? converted->get<std::string>() : nullptr;
    if (text != nullptr && isBlankFilledTag(name)) converted = withoutTrailingSpace(*text);
  }
  put(tiff, name, std::move(converted), budget);
}

void addGpsTag(const std::string& name, const Exiv2::Value& value, Map& gps,
               PropertyBudget& budget) {
  std::optional<MetadataValue> converted;
  if (name == "GPSLatitude" || name == "GPSLongitude" || name == "GPSDestLatitude" ||
      name == "GPSDestLongitude") {
    converted = degrees(value);
  } else if (name == "GPSTimeStamp") {
    converted = timeStamp(value);
  } else {
    converted = plainValue(value, kMaxElements, name == "GPSVersionID");
  }
  put(gps, gpsKeyFor(name), std::move(converted), budget);
}

void addExifData(const Exiv2::ExifData& data, Exiv2Reading& reading, PropertyBudget& budget) {
  Map exif, tiff, gps;
  std::map<std::string, Map> makerNotes;  // by maker-note group ("Nikon3", "CanonCs", ...)
  for (const auto& datum : data) {
    // One tag that Exiv2 cannot hand over costs that tag only.
    try {
      const std::string group = datum.groupName();
      std::string name = datum.tagName();
      // EXIF tags that a camera put in IFD0, which Exiv2 knows by their EXIF-IFD names only.
      if (group == "Image" && name.starts_with("0x")) {
        name = Exiv2::ExifKey(datum.tag(), "Photo").tagName();
      }
      if (name.starts_with("0x")) continue;  // a tag without a name says nothing readable
      const Exiv2::Value& value = datum.value();
      if (group == "Photo") {
        addExifTag(name, value, exif, budget);
      } else if (group == "Image") {
        addTiffTag(name, value, tiff, budget);
      } else if (group == "GPSInfo") {
        addGpsTag(name, value, gps, budget);
      } else if (group != "MakerNote" && Exiv2::ExifTags::isMakerGroup(group)) {
        if (!makerNotes.contains(group) && !budget.take(1)) continue;
        put(makerNotes[group], name, plainValue(value, kMaxMakerNoteElements), budget);
      }
    } catch (...) {
    }
  }
  Map notes;
  for (auto& [group, tags] : makerNotes) {
    if (!tags.empty()) notes.emplace(group, std::move(tags));
  }
  // A second reading (an EXIF block after the file's own) adds to what is there.
  for (auto& [key, map] : std::array<std::pair<const char*, Map*>, 4>{
           {{"{Exif}", &exif}, {"{TIFF}", &tiff}, {"{GPS}", &gps}, {"{MakerNote}", &notes}}}) {
    if (map->empty()) continue;
    Map& into = reading.dictionaries[key];
    for (auto& [name, value] : *map) into.insert_or_assign(name, std::move(value));
  }
}

void addIptcData(const Exiv2::IptcData& data, Exiv2Reading& reading, PropertyBudget& budget) {
  Map iptc;
  // Keywords, bylines and the like repeat: one array holds every occurrence.
  std::map<std::string, Array> repeated;
  for (const auto& datum : data) {
    try {
      if (datum.record() != Exiv2::IptcDataSets::application2 &&
          datum.record() != Exiv2::IptcDataSets::envelope) {
        continue;
      }
      const std::string name = datum.tagName();
      if (name.starts_with("0x")) continue;
      auto value = plainValue(datum.value(), kMaxElements);
      if (!value) continue;
      if (!Exiv2::IptcDataSets::dataSetRepeatable(datum.tag(), datum.record())) {
        put(iptc, name, std::move(value), budget);
        continue;
      }
      Array& occurrences = repeated[name];
      if (static_cast<long>(occurrences.size()) < kMaxElements &&
          budget.take(nodesIn(*value) + (occurrences.empty() ? 1 : 0))) {
        occurrences.push_back(std::move(*value));
      }
    } catch (...) {
    }
  }
  for (auto& [name, occurrences] : repeated) {
    if (!occurrences.empty()) iptc.insert_or_assign(name, std::move(occurrences));
  }
  if (!iptc.empty()) reading.dictionaries.insert_or_assign("{IPTC}", std::move(iptc));
}

std::optional<MetadataValue> xmpValue(const Exiv2::Value& value) {
  if (const auto* languages = dynamic_cast<const Exiv2::LangAltValue*>(&value)) {
    if (languages->value_.empty()) return std::nullopt;
    const auto preferred = languages->value_.find("x-default");
    return MetadataValue(propertyText(preferred != languages->value_.end()
                                          ? preferred->second
                                          : languages->value_.begin()->second));
  }
  if (const auto* array = dynamic_cast<const Exiv2::XmpArrayValue*>(&value)) {
    const long count = array->count();
    if (count > kMaxElements) return std::nullopt;
    Array texts;
    for (long i = 0; i < count; ++i) texts.emplace_back(propertyText(array->toString(i)));
    return MetadataValue(std::move(texts));
  }
  if (const auto* text = dynamic_cast<const Exiv2::XmpTextValue*>(&value)) {
    // The heading of a structure or array whose members follow under their own paths.
    if (text->xmpArrayType() != Exiv2::XmpValue::xaNone ||
        text->xmpStruct() != Exiv2::XmpValue::xsNone) {
      return std::nullopt;
    }
    return MetadataValue(propertyText(text->toString()));
  }
  return std::nullopt;
}

void addXmpData(const Exiv2::XmpData& data, Exiv2Reading& reading, PropertyBudget& budget) {
  Map xmp;
  for (const auto& datum : data) {
    try {
      // "Xmp.dc.creator" is "dc:creator"; members of structures keep their path
      // ("xmpMM:History[1]/stEvt:action").
      put(xmp, datum.groupName() + ":" + datum.tagName(), xmpValue(datum.value()), budget);
    } catch (...) {
    }
  }
  if (!xmp.empty()) reading.dictionaries.insert_or_assign("{XMP}", std::move(xmp));
}

}  // namespace

void initialiseExiv2() {
  static const bool ready = [] {
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    Exiv2::XmpParser::initialize();
    Exiv2::enableBMFF(true);
    return true;
  }();
  (void)ready;
}

void appendCodePoint(std::string& out, std::uint32_t code) {
  if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) code = 0xFFFD;
  if (code < 0x80) {
    out.push_back(static_cast<char>(code));
  } else if (code < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (code >> 6)));
    out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
  } else if (code < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (code >> 12)));
    out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (code >> 18)));
    out.push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
  }
}

bool Exiv2Reading::hasExif() const {
  return dictionaries.contains("{Exif}") || dictionaries.contains("{TIFF}") ||
         dictionaries.contains("{GPS}");
}

std::string propertyText(std::string_view raw) {
  raw = raw.substr(0, raw.find('\0'));
  std::string text;
  if (g_utf8_validate(raw.data(), static_cast<gssize>(raw.size()), nullptr)) {
    text.assign(raw);
  } else {
    // Not UTF-8: cameras of a certain age wrote Latin-1.
    for (const char c : raw) appendCodePoint(text, static_cast<unsigned char>(c));
  }
  if (text.size() > kMaxPropertyText) {
    std::size_t end = kMaxPropertyText;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    text.resize(end);
  }
  return text;
}

Exiv2Reading readWithExiv2(std::span<const char> file, PropertyBudget& budget) {
  Exiv2Reading reading;
  if (file.empty() || file.size() > static_cast<std::size_t>(LONG_MAX)) return reading;
  initialiseExiv2();
  const auto* data = reinterpret_cast<const Exiv2::byte*>(file.data());
  const auto size = static_cast<long>(file.size());
  std::unique_ptr<Exiv2::Image> image;
  try {
    const int type = Exiv2::ImageFactory::getType(data, size);
    if (std::find(kPictureTypes.begin(), kPictureTypes.end(), type) == kPictureTypes.end()) {
      return reading;
    }
    // Over the caller's bytes (a read-only mapping): Exiv2 copies nothing and writes nothing.
    image.reset(Exiv2::ImageFactory::open(data, size).release());
    if (!image) return reading;
    reading.isImage = true;
    image->readMetadata();
  } catch (...) {
    // What was read before the failure still counts.
    if (!image) return reading;
  }
  try {
    reading.pixelWidth = std::max(0, image->pixelWidth());
    reading.pixelHeight = std::max(0, image->pixelHeight());
    if (image->iccProfileDefined()) {
      const Exiv2::DataBuf* profile = image->iccProfile();
      if (profile->pData_ != nullptr && profile->size_ > 0) {
        const auto* bytes = reinterpret_cast<const std::byte*>(profile->pData_);
        reading.iccProfile.assign(bytes, bytes + profile->size_);
      }
    }
    addExifData(image->exifData(), reading, budget);
    addIptcData(image->iptcData(), reading, budget);
    addXmpData(image->xmpData(), reading, budget);
  } catch (...) {
  }
  return reading;
}

void addExifBlock(std::span<const std::byte> block, Exiv2Reading& reading, PropertyBudget& budget) {
  // The TIFF header comes straight away or after "Exif\0\0" (and, from HEIF, an offset).
  const auto isTiffHeader = [&](std::size_t at) {
    const auto byte = [&](std::size_t i) { return std::to_integer<char>(block[at + i]); };
    return (byte(0) == 'I' && byte(1) == 'I' && byte(2) == 42 && byte(3) == 0) ||
           (byte(0) == 'M' && byte(1) == 'M' && byte(2) == 0 && byte(3) == 42);
  };
  std::size_t start = 0;
  while (start + 8 <= block.size() && start < 16 && !isTiffHeader(start)) ++start;
  if (start + 8 > block.size() || start >= 16) return;
  const auto tiff = block.subspan(start);
  if (tiff.size() > UINT32_MAX) return;
  try {
    initialiseExiv2();
    Exiv2::ExifData data;
    Exiv2::ExifParser::decode(data, reinterpret_cast<const Exiv2::byte*>(tiff.data()),
                              static_cast<std::uint32_t>(tiff.size()));
    addExifData(data, reading, budget);
  } catch (...) {
  }
}

}  // namespace lumenscribe::decoder
