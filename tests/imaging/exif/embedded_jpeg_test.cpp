#include "imaging/exif/embedded_jpeg.h"

#include "support/sample_media.h"

#include <algorithm>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;
using testing::ElementsAre;
using testing::SizeIs;

/// What is handed out to be made over.
std::vector<Bytes> found(Bytes bytes) {
  std::vector<Bytes> jpegs;
  remakeEmbeddedJpegs(bytes, [&](std::span<std::uint8_t> jpeg) {
    jpegs.emplace_back(jpeg.begin(), jpeg.end());
    return jpeg.size();
  });
  return jpegs;
}

const Bytes filler(50, 0x55);

TEST(EmbeddedJpeg, IsFoundWhereverItStands) {
  const Bytes one = jpegPhoto({.width = 32, .height = 16, .exif = false});
  const Bytes other = jpegPhoto({.width = 48, .height = 16, .exif = false, .progressive = true});
  EXPECT_THAT(found(joined({filler, one, filler, other, other, filler})), ElementsAre(one, other, other));
  EXPECT_THAT(found(one), ElementsAre(one));
}

TEST(EmbeddedJpeg, IsNoneWithoutItsEnd) {
  const Bytes jpeg = jpegPhoto({.width = 32, .height = 16, .exif = false});
  EXPECT_THAT(found(joined({filler, {jpeg.begin(), jpeg.end() - 2}, filler})), SizeIs(0));
  EXPECT_THAT(found({}), SizeIs(0));
  EXPECT_THAT(found({0xFF, 0xD8, 0xFF, 0xE0}), SizeIs(0));
}

TEST(EmbeddedJpeg, StaysWhereItStatesAnOrientationOfItsOwn) {
  const Bytes own = jpegPhoto({.width = 32, .height = 16, .orientation = 1});
  const Bytes other = jpegPhoto({.width = 48, .height = 16, .exif = false});
  EXPECT_THAT(found(joined({own, other})), ElementsAre(other));
}

TEST(EmbeddedJpeg, IsFoundBehindOneThatCannotBeMadeOver) {
  const Bytes one = jpegPhoto({.width = 32, .height = 16, .exif = false});
  const Bytes other = jpegPhoto({.width = 48, .height = 16, .exif = false});
  Bytes bytes = joined({one, other});
  const Bytes source = bytes;
  std::vector<std::size_t> sizes;
  remakeEmbeddedJpegs(bytes, [&](std::span<std::uint8_t> jpeg) {
    sizes.push_back(jpeg.size());
    return std::size_t{0};
  });
  EXPECT_THAT(sizes, ElementsAre(one.size(), other.size()));
  EXPECT_EQ(bytes, source);
}

TEST(EmbeddedJpeg, MayBeginWithAnotherByte) {
  const Bytes jpeg = jpegPhoto({.width = 32, .height = 16, .exif = false});
  Bytes bytes = joined({filler, jpeg, filler});
  bytes[filler.size()] = 2;
  EXPECT_THAT(found(bytes), ElementsAre(jpeg));
  remakeEmbeddedJpegs(bytes, [](std::span<std::uint8_t> preview) {
    preview[0] = 0xFF;
    return preview.size();
  });
  EXPECT_EQ(bytes[filler.size()], 2);
}

TEST(EmbeddedJpeg, CostsLittleWhereBytesLookLikeVeryMany) {
  Bytes bytes;
  for (int i = 0; i < 100'000; ++i) bytes.insert(bytes.end(), {0xFF, 0xD8, 0xFF, 0xE0, 0, 2});
  bytes.insert(bytes.end(), {0xFF, 0xD9});
  int asked = 0;
  remakeEmbeddedJpegs(bytes, [&](auto) { return ++asked, std::size_t{0}; });
  EXPECT_LE(asked, 100);
}

}  // namespace
}  // namespace kestrova::imaging
