// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// The image property map as it crosses from the decoder worker: what one side writes the
// other reads back, and a reply out of bounds is refused whole.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <functional>
#include <limits>

#include "platform/decoder_protocol.h"

namespace lumenscribe::platform::decoder {
namespace {

using Map = MetadataValue::Map;
using Array = MetadataValue::Array;

using Reply = std::optional<std::optional<ImageProperties>>;

Reply roundTrip(const std::vector<std::byte>& bytes) {
  Reader in(bytes);
  auto read = readImageProperties(in);
  if (!in.finished()) return std::nullopt;
  return read;
}

std::vector<std::byte> written(const std::optional<ImageProperties>& properties) {
  Writer out;
  write(out, properties);
  return std::move(out).data();
}

ImageProperties withProperties(Map properties) { return {1, std::move(properties)}; }

TEST(PropertyMapProtocol, whatTheWorkerWritesTheEngineReadsBack) {
  const ImageProperties photo{
      3,
      {{"PixelWidth", 4032},
       {"DPIWidth", 72.5},
       {"ProfileName", "Display P3 — ×·ƒ"},
       {"{Exif}", Map{{"ISOSpeedRatings", Array{100, 200}}, {"FNumber", 2.8}}},
       {"{MakerNote}", Map{{"Nikon3", Map{{"Quality", "FINE"}, {"Empty", Map{}}}}}},
       {"Nothing", Array{}},
       {"", ""}}};
  EXPECT_EQ(roundTrip(written(photo)), Reply(photo));
  EXPECT_EQ(roundTrip(written(std::nullopt)), Reply(std::optional<ImageProperties>()));
  // Values of no plain kind travel as text.
  const auto other = roundTrip(written(withProperties({{"x", MetadataValue::Other{"thing"}}})));
  ASSERT_TRUE(other && *other);
  EXPECT_EQ((*other)->properties.at("x"), MetadataValue("thing"));
}

// Maps within maps, `levels` of them counting the top level, the innermost holding `leaf`.
Map nested(int levels, MetadataValue leaf = "leaf") {
  Map map{{"k", std::move(leaf)}};
  for (int level = 1; level < levels; ++level) map = Map{{"k", std::move(map)}};
  return map;
}

TEST(PropertyMapProtocol, refusesRepliesOutOfBounds) {
  const std::string invalidUtf8 = "\xC3\x28";
  const std::string overlong = "\xC0\xAF";
  const std::string surrogate = "\xED\xA0\x80";
  Array tooMany(kMaxPropertyNodes, MetadataValue(1));
  struct Case {
    const char* what;
    ImageProperties properties;
    bool accepted;
  };
  const Case cases[] = {
      {"as deep as allowed", withProperties(nested(kMaxPropertyDepth)), true},
      {"one level deeper", withProperties(nested(kMaxPropertyDepth + 1)), false},
      {"an array as deep as allowed", withProperties(nested(kMaxPropertyDepth - 1, Array{1})),
       true},
      {"an array one level deeper", withProperties(nested(kMaxPropertyDepth, Array{1})), false},
      {"too many values", withProperties({{"k", tooMany}}), false},
      {"a text as long as allowed", withProperties({{"k", std::string(kMaxPropertyText, 'a')}}),
       true},
      {"a longer text", withProperties({{"k", std::string(kMaxPropertyText + 1, 'a')}}), false},
      {"a longer key", withProperties({{std::string(kMaxPropertyKey + 1, 'k'), 1}}), false},
      {"text that is not UTF-8", withProperties({{"k", invalidUtf8}}), false},
      {"an overlong form", withProperties({{"k", overlong}}), false},
      {"a surrogate", withProperties({{"k", surrogate}}), false},
      {"a key that is not UTF-8", withProperties({{invalidUtf8, 1}}), false},
      {"not a number", withProperties({{"k", std::nan("")}}), false},
      {"infinity", withProperties({{"k", std::numeric_limits<double>::infinity()}}), false},
      {"no image", {0, {}}, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(roundTrip(written(c.properties)).has_value(), c.accepted) << c.what;
  }
}

TEST(PropertyMapProtocol, refusesMalformedBytes) {
  const auto good = written(withProperties({{"a", 1}, {"b", "two"}}));
  // Every cut short of the whole reply fails, and so does one byte more.
  for (std::size_t size = 0; size < good.size(); ++size) {
    EXPECT_FALSE(roundTrip({good.begin(), good.begin() + static_cast<long>(size)})) << size;
  }
  auto longer = good;
  longer.push_back(std::byte{0});
  EXPECT_FALSE(roundTrip(longer));

  const auto patched = [](std::function<void(Writer&)> body) {
    Writer out;
    out.u8(1);   // present
    out.i32(1);  // one image
    body(out);
    return std::move(out).data();
  };
  struct Case {
    const char* what;
    std::vector<std::byte> bytes;
  };
  const Case cases[] = {
      // Kinds: 1 text, 2 integer, 4 array, 5 map.
      {"a top level that is not a map", patched([](Writer& out) {
         out.u8(1);
         out.text("x");
       })},
      {"a repeated key", patched([](Writer& out) {
         out.u8(5);
         out.u32(2);
         for (std::int64_t value : {1, 2}) {
           out.text("k");
           out.u8(2);
           out.i64(value);
         }
       })},
      {"an unknown kind", patched([](Writer& out) {
         out.u8(5);
         out.u32(1);
         out.text("k");
         out.u8(9);
       })},
      {"a count past what is there", patched([](Writer& out) {
         out.u8(5);
         out.u32(0xFFFFFFFF);
         out.text("k");
       })},
      {"an array claiming more values than allowed", patched([](Writer& out) {
         out.u8(5);
         out.u32(1);
         out.text("k");
         out.u8(4);
         out.u32(kMaxPropertyNodes + 1);
       })},
      {"a presence flag of 2",
       [] {
         Writer out;
         out.u8(2);
         return std::move(out).data();
       }()},
  };
  for (const Case& c : cases) EXPECT_FALSE(roundTrip(c.bytes)) << c.what;
}

}  // namespace
}  // namespace lumenscribe::platform::decoder
