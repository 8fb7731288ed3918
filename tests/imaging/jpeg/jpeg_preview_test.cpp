#include "imaging/jpeg/jpeg_outline.h"
#include "imaging/jpeg/jpeg_rewrite.h"
#include "support/external_tool.h"
#include "support/rewriting.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

// Previews that are turned with their photo.

namespace kestrova::imaging {
namespace {

using namespace kestrova::test;

class PreviewTest : public testing::Test {
 protected:
  const Reorientation quarterTurn_ = reorientationFrom(6);
  const Bytes preview_ = jpegPhoto({.width = 93, .height = 60, .seed = 3, .exif = false});
  TemporaryFolder folder_;
};

TEST_F(PreviewTest, IsTurnedEvenWhereItsBytesHaveNoRoomForIt) {
  const Path path = writeFile(folder_ / "small.png", pngPhoto({.width = 93, .height = 61, .exif = false}));
  ASSERT_EQ(runTool("convert", {path.native(), "-quality", "12", "-define", "jpeg:optimize-coding=true",
                                "-interlace", "JPEG", (folder_ / "small.jpg").native()})
                .status,
            0);
  const Bytes source = bytesOf(folder_ / "small.jpg");
  Bytes small = source;
  const std::size_t length = turnJpegWithin(small, quarterTurn_, 1'000'000);
  EXPECT_GT(length, 0U);
  EXPECT_LE(length, source.size());
  EXPECT_EQ(outlineJpeg(small).imageEnd, length);
  EXPECT_GT(test::sizeOf(small)->stored.height, test::sizeOf(small)->stored.width);
}

TEST_F(PreviewTest, IsNotTurnedWithMorePixelsThanItMayHave) {
  Bytes preview = preview_;
  EXPECT_EQ(turnJpegWithin(preview, quarterTurn_, 93 * 60 - 1), 0U);
  EXPECT_EQ(preview, preview_);
  EXPECT_GT(turnJpegWithin(preview, quarterTurn_, 93 * 60), 0U);
}

TEST_F(PreviewTest, MayHaveAsManyPixelsAsItsPhotoAndAtLeastAMillion) {
  const Bytes million = jpegPhoto({.width = 1000, .height = 1000, .exif = false});
  const Bytes more = jpegPhoto({.width = 1008, .height = 1000, .exif = false});
  const auto isTurned = [](Bytes preview, const PixelSize& photo) {
    return previewTurner({.source = photo,
                          .scaled = photo,
                          .reorientation = reorientationFrom(6),
                          .resetOrientation = true})(preview) > 0;
  };
  EXPECT_TRUE(isTurned(million, {10, 10}));
  EXPECT_FALSE(isTurned(more, {10, 10}));
  EXPECT_TRUE(isTurned(more, {1008, 1000}));
}

TEST_F(PreviewTest, IsLeftAloneWhenItsPhotoIsNotTurned) {
  EXPECT_FALSE(
      previewTurner({.source = {64, 48}, .scaled = {32, 24}, .reorientation = {}, .resetOrientation = true}));
}

}  // namespace
}  // namespace kestrova::imaging
