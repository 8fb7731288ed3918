#include "model/options.h"

#include <gtest/gtest.h>

namespace kestrova {

TEST(Options, AreTheItemsOfTheirListsInOrder) {
  EXPECT_EQ(optionAt<Media>(0), Media::photosAndVideos);
  EXPECT_EQ(optionAt<PhotoFormats>(2), PhotoFormats::jpegTiffPng);
  EXPECT_EQ(optionAt<FolderFormat>(1), FolderFormat::mediumName);
  EXPECT_EQ(optionAt<Resolution>(2), Resolution::fit1080p);
}

TEST(Options, AreNoneOutsideTheirLists) {
  EXPECT_EQ(optionAt<Resolution>(-1), Resolution::none);
  EXPECT_EQ(optionAt<Media>(3), Media::none);
  EXPECT_EQ(optionAt<FolderFormat>(std::int64_t{1} << 32), FolderFormat::none);
  EXPECT_EQ(rowOf(Resolution::none), nullptr);
}

TEST(Options, KeepTheirIndices) {
  EXPECT_EQ(indexOf(Resolution::none), -1);
  EXPECT_EQ(indexOf(Resolution::original), 0);
  EXPECT_EQ(indexOf(Resolution::fit1080p), 2);
}

TEST(Options, HaveAFrameOnlyWherePhotosAreToShrink) {
  EXPECT_FALSE(rowOf(Resolution::original)->frame.has_value());
  EXPECT_EQ(rowOf(Resolution::fit720p)->frame, (PictureSize{1280, 720}));
  EXPECT_EQ(rowOf(Resolution::fit1080p)->frame, (PictureSize{1920, 1080}));
}

}  // namespace kestrova
