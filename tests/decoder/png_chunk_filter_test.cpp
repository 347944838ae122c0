// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/png_chunk_filter.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace lumenscribe::decoder {
namespace {

using Bytes = std::vector<std::byte>;

const std::filesystem::path kFixtures =
    std::filesystem::path(LUMENSCRIBE_TEST_DATA_DIR) / "cleancopy";

Bytes readFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::vector<char> bytes((std::istreambuf_iterator<char>(in)), {});
  return Bytes(reinterpret_cast<const std::byte*>(bytes.data()),
               reinterpret_cast<const std::byte*>(bytes.data()) + bytes.size());
}

void appendBigEndian(Bytes& out, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) out.push_back(std::byte((value >> shift) & 0xFF));
}

// A chunk as PNG lays it out, with a correct CRC.
Bytes chunk(std::string_view type, std::string_view data) {
  Bytes out;
  appendBigEndian(out, static_cast<std::uint32_t>(data.size()));
  const std::string body = std::string(type) + std::string(data);
  for (const char c : body) out.push_back(std::byte(c));
  appendBigEndian(out, static_cast<std::uint32_t>(
                           crc32(0, reinterpret_cast<const Bytef*>(body.data()), body.size())));
  return out;
}

Bytes png(std::initializer_list<Bytes> chunks) {
  Bytes out = {std::byte{0x89}, std::byte{'P'},  std::byte{'N'},  std::byte{'G'},
               std::byte{'\r'}, std::byte{'\n'}, std::byte{0x1A}, std::byte{'\n'}};
  for (const Bytes& part : chunks) out.insert(out.end(), part.begin(), part.end());
  return out;
}

struct Chunk {
  std::string type;
  Bytes whole;  // length, type, data and CRC
};

std::vector<Chunk> chunksOf(const Bytes& file) {
  std::vector<Chunk> chunks;
  for (std::size_t at = 8; at + 12 <= file.size();) {
    const std::uint32_t length = std::to_integer<std::uint32_t>(file[at]) << 24 |
                                 std::to_integer<std::uint32_t>(file[at + 1]) << 16 |
                                 std::to_integer<std::uint32_t>(file[at + 2]) << 8 |
                                 std::to_integer<std::uint32_t>(file[at + 3]);
    Chunk chunk;
    for (int i = 4; i < 8; ++i) chunk.type.push_back(std::to_integer<char>(file[at + i]));
    chunk.whole.assign(file.begin() + at, file.begin() + at + 12 + length);
    chunks.push_back(std::move(chunk));
    at += 12 + length;
  }
  return chunks;
}

const Bytes kHeader = chunk("IHDR", std::string("\0\0\0\1\0\0\0\1\x08\x02\0\0\0", 13));
const Bytes kData = chunk("IDAT", "pixels");
const Bytes kEnd = chunk("IEND", "");

TEST(PngChunkFilter, keepsOnlyWhatShowsThePixelsWithTheirBytesAndCrcs) {
  const Bytes source = readFile(kFixtures / "text_chunks.png");
  const auto filtered = filterPngChunks(source, std::nullopt);
  ASSERT_TRUE(filtered);
  std::vector<std::string> kept;
  std::vector<Bytes> keptBytes;
  for (const Chunk& chunk : chunksOf(source)) {
    if (chunk.type == "IHDR" || chunk.type == "gAMA" || chunk.type == "cHRM" ||
        chunk.type == "pHYs" || chunk.type == "IDAT" || chunk.type == "IEND") {
      keptBytes.push_back(chunk.whole);
    }
  }
  std::vector<Bytes> outBytes;
  for (const Chunk& chunk : chunksOf(*filtered)) {
    kept.push_back(chunk.type);
    outBytes.push_back(chunk.whole);
  }
  // tEXt, zTXt, iTXt (XMP), tIME, eXIf (GPS) and bKGD are gone; the rest byte for byte.
  EXPECT_EQ(kept, (std::vector<std::string>{"IHDR", "gAMA", "cHRM", "pHYs", "IDAT", "IEND"}));
  EXPECT_EQ(outBytes, keptBytes);
}

TEST(PngChunkFilter, writesTheOrientationAsAnExifChunkBeforeTheFirstImageData) {
  const auto filtered = filterPngChunks(
      png({kHeader, chunk("tEXt", "Author\0Me"), kData, chunk("IDAT", "more"), kEnd}), 6);
  ASSERT_TRUE(filtered);
  const auto chunks = chunksOf(*filtered);
  ASSERT_EQ(chunks.size(), 5u);
  EXPECT_EQ(chunks[1].type, "eXIf");
  EXPECT_EQ(chunks[2].whole, kData);
  // The one chunk made here carries a CRC of its own over its type and data.
  const Bytes block = orientationExifBlock(6);
  Bytes expected =
      chunk("eXIf", std::string(reinterpret_cast<const char*>(block.data()), block.size()));
  EXPECT_EQ(chunks[1].whole, expected);
  // "MM", 42, IFD0 at 8: one entry, tag 0x0112 (SHORT, 1 value) = 6.
  EXPECT_EQ(block.size(), 26u);
  EXPECT_EQ(std::to_integer<int>(block[10]), 0x01);
  EXPECT_EQ(std::to_integer<int>(block[11]), 0x12);
  EXPECT_EQ(std::to_integer<int>(block[18]), 0);
  EXPECT_EQ(std::to_integer<int>(block[19]), 6);

  // An orientation out of range is no orientation.
  const auto without = filterPngChunks(png({kHeader, kData, kEnd}), 9);
  ASSERT_TRUE(without);
  EXPECT_EQ(chunksOf(*without).size(), 3u);
}

TEST(PngChunkFilter, refusesWhatItCannotVouchFor) {
  Bytes hugeLength = png({kHeader});
  appendBigEndian(hugeLength, 0x80000000u);
  for (const char c : std::string("IDAT")) hugeLength.push_back(std::byte(c));
  Bytes truncated = png({kHeader, kData, kEnd});
  truncated.resize(truncated.size() - 3);
  Bytes badSignature = png({kHeader, kData, kEnd});
  badSignature[1] = std::byte{'J'};

  const struct {
    const char* name;
    Bytes file;
  } cases[] = {
      {"no signature", badSignature},
      {"empty", {}},
      {"IHDR not first", png({kData, kHeader, kEnd})},
      {"IHDR twice", png({kHeader, kHeader, kData, kEnd})},
      {"an unknown critical chunk", png({kHeader, chunk("ABCD", "x"), kData, kEnd})},
      {"a type that is not letters", png({kHeader, chunk("a1cd", "x"), kData, kEnd})},
      {"a length past 2^31 - 1", hugeLength},
      {"cut inside IEND", truncated},
      {"no IEND", png({kHeader, kData})},
      {"IEND before any IDAT", png({kHeader, kEnd})},
  };
  for (const auto& test : cases) {
    EXPECT_FALSE(filterPngChunks(test.file, 1)) << test.name;
  }
}

TEST(PngChunkFilter, dropsWhatFollowsTheEndAndUnknownAncillaryChunks) {
  Bytes file = png({kHeader, chunk("prVt", "private"), chunk("acTL", "anim"), kData, kEnd});
  const std::size_t imageEnd = file.size();
  for (const char c : std::string("appended after the end")) file.push_back(std::byte(c));
  const auto filtered = filterPngChunks(file, std::nullopt);
  ASSERT_TRUE(filtered);
  EXPECT_EQ(*filtered, png({kHeader, kData, kEnd}));
  EXPECT_LT(filtered->size(), imageEnd);
}

}  // namespace
}  // namespace lumenscribe::decoder
