#pragma once

#include "imaging/photo_properties.h"
#include "support/sample_media.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <string>

#include <gtest/gtest.h>

// Short names for what the tests of photo_properties build and read.

namespace kestrova::test {

inline constexpr std::size_t prefixSize = 40960;

inline imaging::PhotoProperties readPrefix(const Bytes& file, std::size_t size = prefixSize) {
  const auto properties = imaging::readPhotoProperties(ByteView(file).first(std::min(size, file.size())));
  EXPECT_TRUE(properties.has_value());
  return properties.value_or(imaging::PhotoProperties());
}

inline SamplePhoto sample() {
  return {.width = 96,
          .height = 64,
          .orientation = 6,
          .digitized = "2014:05:21 13:45:02",
          .taken = "2013:01:02 03:04:05"};
}

inline void expectSample(const imaging::PhotoProperties& read) {
  EXPECT_EQ(read.orientation, 6);
  EXPECT_EQ(read.pixelWidth, 96);
  EXPECT_EQ(read.pixelHeight, 64);
  EXPECT_EQ(read.digitized(), "2014:05:21 13:45:02");
}

inline const Bytes startOfImage{0xFF, 0xD8};
inline const Bytes startOfScan{0xFF, 0xDA, 0x00, 0x02};

inline Bytes frameHeader(std::uint8_t marker, std::uint16_t width, std::uint16_t height) {
  const auto high = [](std::uint16_t n) { return static_cast<std::uint8_t>(n >> 8); };
  const auto low = [](std::uint16_t n) { return static_cast<std::uint8_t>(n); };
  return jpegSegment(marker, Bytes{8, high(height), low(height), high(width), low(width), 1, 1, 0x11, 0});
}

/// A little-endian block with one entry in its first directory.
inline Bytes blockWith(const TiffEntry& entry) {
  TiffBlock block;
  block.image = {entry};
  return block.encode();
}

inline Bytes blockWithExif(const TiffEntry& entry) {
  TiffBlock block;
  block.exif = {entry};
  return block.encode();
}

/// What a JPEG with this Exif block says.
inline imaging::PhotoProperties readBlock(const Bytes& block) {
  return readPrefix(joined({startOfImage, exifSegment(block), frameHeader(0xC0, 96, 64)}));
}

inline std::string digitizedOf(const Bytes& block) { return std::string(readBlock(block).digitized()); }

/// Where an entry of this tag is in a little-endian block.
inline std::size_t entryOf(const Bytes& block, std::uint16_t tag) {
  const Bytes bytes{static_cast<std::uint8_t>(tag), static_cast<std::uint8_t>(tag >> 8)};
  const auto found = std::search(block.begin(), block.end(), bytes.begin(), bytes.end());
  return static_cast<std::size_t>(found - block.begin());
}

inline void setWord(Bytes& block, std::size_t at, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; ++i) block.at(at + i) = static_cast<std::uint8_t>(value >> 8 * i);
}

inline constexpr std::uint16_t orientationTag = 0x0112;
inline constexpr std::uint16_t exifDirectoryTag = 0x8769;
inline constexpr std::uint16_t digitizedTag = 0x9004;

}  // namespace kestrova::test
