#include "execution/frame_fit.h"

#include "model/options.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

PictureSize fit(double width, double height, Resolution resolution) {
  return fitIntoFrame({width, height}, rowOf(resolution)->frame.value());
}

}  // namespace

TEST(FrameFit, LimitsAPhotoOf4To3ByItsHeight) {
  EXPECT_EQ(fit(4000, 3000, Resolution::fit720p), (PictureSize{960, 720}));
  EXPECT_EQ(fit(4000, 3000, Resolution::fit1080p), (PictureSize{1440, 1080}));
}

TEST(FrameFit, LimitsAPhotoOf2To1ByItsWidth) {
  EXPECT_EQ(fit(4000, 2000, Resolution::fit720p), (PictureSize{1280, 640}));
  EXPECT_EQ(fit(4000, 2000, Resolution::fit1080p), (PictureSize{1920, 960}));
}

TEST(FrameFit, KeepsAPhotoOfExactlyTheFramesSize) {
  EXPECT_EQ(fit(1920, 1080, Resolution::fit1080p), (PictureSize{1920, 1080}));
  EXPECT_EQ(fit(1280, 720, Resolution::fit720p), (PictureSize{1280, 720}));
}

TEST(FrameFit, LimitsAPhotoOfExactly16To9ByItsHeight) {
  EXPECT_EQ(fit(3840, 2160, Resolution::fit1080p), (PictureSize{1920, 1080}));
}

TEST(FrameFit, NeverEnlarges) {
  EXPECT_EQ(fit(1000, 700, Resolution::fit720p), (PictureSize{1000, 700}));
  EXPECT_EQ(fit(1280, 100, Resolution::fit720p), (PictureSize{1280, 100}));
  EXPECT_EQ(fit(1, 1, Resolution::fit1080p), (PictureSize{1, 1}));
}

TEST(FrameFit, LimitsAnUprightPhotoByTheFramesHeight) {
  EXPECT_EQ(fit(3000, 4000, Resolution::fit720p), (PictureSize{540, 720}));
}

TEST(FrameFit, LetsAWidePhotoKeepAHeightAboveTheFrameWhenItsWidthFits) {
  EXPECT_EQ(fit(1920, 1079, Resolution::fit1080p), (PictureSize{1920, 1079}));
}

TEST(FrameFit, RoundsTheOtherSideToSinglePrecision) {
  EXPECT_EQ(fit(1001, 3000, Resolution::fit720p).width, static_cast<double>(240.24F));
}

}  // namespace kestrova
