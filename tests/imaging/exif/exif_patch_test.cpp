#include "imaging/exif/exif_patch.h"

#include "imaging/photo_properties.h"
#include "support/sample_media.h"

#include <algorithm>
#include <random>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;
using testing::ElementsAre;

Bytes sampleBlock(bool bigEndian) {
  return exifBlock({.width = 640,
                    .height = 480,
                    .orientation = 6,
                    .exifPixelSize = true,
                    .bigEndian = bigEndian,
                    .thumbnail = true,
                    .makerNoteBytes = 100})
      .encode();
}

PhotoProperties read(const Bytes& block) {
  Bytes file{0xFF, 0xD8};
  const Bytes segment = exifSegment(block);
  file.insert(file.end(), segment.begin(), segment.end());
  return readPhotoProperties(file).value();
}

std::size_t differences(const Bytes& one, const Bytes& other) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < one.size(); ++i) count += std::size_t{one[i] != other[i]};
  return count;
}

class ExifPatchTest : public testing::TestWithParam<bool> {};

TEST_P(ExifPatchTest, WritesOrientationAndPixelSizeWhereTheyStand) {
  const Bytes source = sampleBlock(GetParam());
  Bytes block = source;
  patchExif(block, {.pixelSize = PixelSize{100, 70}, .resetOrientation = true});
  EXPECT_EQ(read(block).orientation, 1);
  EXPECT_EQ(read(block).pixelWidth, 100);
  EXPECT_EQ(read(block).pixelHeight, 70);
  constexpr std::size_t bytesOfTheValues = 5;  // one of the orientation, two of each side
  EXPECT_LE(differences(source, block), bytesOfTheValues);
}

TEST_P(ExifPatchTest, KeepsTheOrientationWhenThePixelsWereNotTurned) {
  Bytes block = sampleBlock(GetParam());
  patchExif(block, {.pixelSize = PixelSize{100, 70}});
  EXPECT_EQ(read(block).orientation, 6);
}

TEST_P(ExifPatchTest, LeavesAPreviewOutThatCannotBeTurned) {
  Bytes block = sampleBlock(GetParam());
  ASSERT_FALSE(exifPreview(block).empty());
  turnExifPreview(block, [](auto) { return 0U; });
  EXPECT_TRUE(exifPreview(block).empty());
}

TEST_P(ExifPatchTest, StatesTheLengthOfAPreviewThatWasTurned) {
  Bytes block = sampleBlock(GetParam());
  turnExifPreview(block, [](std::span<std::uint8_t> preview) {
    EXPECT_EQ(preview[0], 0xFF);
    EXPECT_EQ(preview[1], 0xD8);
    return std::size_t{123};
  });
  EXPECT_EQ(exifPreview(block).size(), 123U);
}

TEST_P(ExifPatchTest, LeavesOtherJpegsAlone) {
  const Bytes other = jpegPhoto({.width = 32, .height = 16, .exif = false});
  Bytes block =
      exifBlock({.orientation = 6, .bigEndian = GetParam(), .thumbnail = true, .makerNote = other}).encode();
  std::vector<std::size_t> sizes;
  turnExifPreview(block, [&](std::span<std::uint8_t> preview) {
    sizes.push_back(preview.size());
    std::ranges::fill(preview, std::uint8_t{0});
    return preview.size();
  });
  EXPECT_THAT(sizes, ElementsAre(exifPreview(block).size()));
  EXPECT_FALSE(std::ranges::search(block, other).empty());
}

TEST_P(ExifPatchTest, StandsWhateverTheBytesAre) {
  std::mt19937 random(3);
  const Bytes source = sampleBlock(GetParam());
  for (int i = 0; i < 5000; ++i) {
    Bytes block = source;
    block.resize(i % 2 == 0 ? block.size() : random() % block.size());
    for (int change = 0; change < 8 && !block.empty(); ++change) {
      block[random() % std::min<std::size_t>(block.size(), change % 2 == 0 ? 160 : block.size())] =
          static_cast<std::uint8_t>(random());
    }
    const std::size_t size = block.size();
    turnExifPreview(block, [](std::span<std::uint8_t> preview) {
      std::ranges::fill(preview, std::uint8_t{0});
      return preview.size();
    });
    patchExif(block, {.pixelSize = PixelSize{70'000, 70}, .resetOrientation = true});
    ASSERT_EQ(block.size(), size);
  }
}

INSTANTIATE_TEST_SUITE_P(ByteOrders, ExifPatchTest, testing::Bool(),
                         [](const auto& type) { return type.param ? "BigEndian" : "LittleEndian"; });

}  // namespace
}  // namespace kestrova::imaging
