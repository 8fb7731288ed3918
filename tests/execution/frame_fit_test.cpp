#include "execution/frame_fit.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

PictureSize fit(double width, double height, std::int64_t resolution) {
  return fitIntoFrame({width, height}, frameOf(resolution).value());
}

}  // namespace

TEST(FrameFit, LimitsAPhotoOf4To3ByItsHeight) {
  EXPECT_EQ(fit(4000, 3000, 1), (PictureSize{960, 720}));
  EXPECT_EQ(fit(4000, 3000, 2), (PictureSize{1440, 1080}));
}

TEST(FrameFit, LimitsAPhotoOf2To1ByItsWidth) {
  EXPECT_EQ(fit(4000, 2000, 1), (PictureSize{1280, 640}));
  EXPECT_EQ(fit(4000, 2000, 2), (PictureSize{1920, 960}));
}

TEST(FrameFit, KeepsAPhotoOfExactlyTheFramesSize) {
  EXPECT_EQ(fit(1920, 1080, 2), (PictureSize{1920, 1080}));
  EXPECT_EQ(fit(1280, 720, 1), (PictureSize{1280, 720}));
}

TEST(FrameFit, LimitsAPhotoOfExactly16To9ByItsHeight) {
  EXPECT_EQ(fit(3840, 2160, 2), (PictureSize{1920, 1080}));
}

TEST(FrameFit, NeverEnlarges) {
  EXPECT_EQ(fit(1000, 700, 1), (PictureSize{1000, 700}));
  EXPECT_EQ(fit(1280, 100, 1), (PictureSize{1280, 100}));
  EXPECT_EQ(fit(1, 1, 2), (PictureSize{1, 1}));
}

TEST(FrameFit, LimitsAnUprightPhotoByTheFramesHeight) {
  EXPECT_EQ(fit(3000, 4000, 1), (PictureSize{540, 720}));
}

TEST(FrameFit, LetsAWidePhotoKeepAHeightAboveTheFrameWhenItsWidthFits) {
  EXPECT_EQ(fit(1920, 1079, 2), (PictureSize{1920, 1079}));
}

TEST(FrameFit, RoundsTheOtherSideToSinglePrecision) {
  EXPECT_EQ(fit(1001, 3000, 1).width, static_cast<double>(240.24F));
}

TEST(FrameFit, HasAFrameOnlyForTheTwoResolutions) {
  EXPECT_FALSE(frameOf(0).has_value());
  EXPECT_FALSE(frameOf(-1).has_value());
  EXPECT_FALSE(frameOf(3).has_value());
}

}  // namespace kestrova
