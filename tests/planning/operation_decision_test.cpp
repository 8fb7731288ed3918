#include "planning/operation_decision.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

using Handler = PlanEntry::Handler;

const PlanningOptions bothFilters{.filterSmallPhotos = true, .filterSmallVideos = true};

FileFacts photo(std::uint64_t size) { return {.size = size, .isPhoto = true}; }
FileFacts video(std::uint64_t size) { return {.size = size, .isVideo = true}; }
FileFacts photoAndVideo(std::uint64_t size) { return {.size = size, .isPhoto = true, .isVideo = true}; }
FileFacts other(std::uint64_t size) { return {.size = size}; }

ImageMetadata picture(std::optional<std::int64_t> width, std::optional<std::int64_t> height) {
  ImageMetadata metadata;
  metadata.pixelWidth = width;
  metadata.pixelHeight = height;
  return metadata;
}

ImageMetadata turned(std::int64_t orientation) {
  ImageMetadata metadata;
  metadata.orientation = orientation;
  return metadata;
}

}  // namespace

TEST(OperationDecision, FiltersAPhotoOf19999BytesAndKeepsOneOf20000) {
  EXPECT_TRUE(isSmallFile(photo(19999), bothFilters));
  EXPECT_FALSE(isSmallFile(photo(20000), bothFilters));
}

TEST(OperationDecision, FiltersAVideoOf1999999BytesAndKeepsOneOf2000000) {
  EXPECT_TRUE(isSmallFile(video(1999999), bothFilters));
  EXPECT_FALSE(isSmallFile(video(2000000), bothFilters));
}

TEST(OperationDecision, FiltersByKind) {
  EXPECT_FALSE(isSmallFile(video(100), {.filterSmallPhotos = true}));
  EXPECT_FALSE(isSmallFile(photo(100), {.filterSmallVideos = true}));
  EXPECT_FALSE(isSmallFile(other(100), bothFilters));
  EXPECT_FALSE(isSmallFile(photo(0), {}));
}

TEST(OperationDecision, FiltersAFileOfBothKindsByEitherRule) {
  EXPECT_TRUE(isSmallFile(photoAndVideo(1000000), bothFilters));
  EXPECT_FALSE(isSmallFile(photoAndVideo(1000000), {.filterSmallPhotos = true}));
  EXPECT_TRUE(isSmallFile(photoAndVideo(19999), {.filterSmallPhotos = true}));
}

TEST(OperationDecision, FiltersAPhotoWithASideBelow400Pixels) {
  EXPECT_TRUE(isSmallPicture(picture(4000, 399), bothFilters));
  EXPECT_TRUE(isSmallPicture(picture(399, 4000), bothFilters));
  EXPECT_FALSE(isSmallPicture(picture(400, 400), bothFilters));
  EXPECT_FALSE(isSmallPicture(picture(10, 10), {}));
}

TEST(OperationDecision, DoesNotFilterAPhotoWithAnUnknownSide) {
  EXPECT_FALSE(isSmallPicture(picture(std::nullopt, 10), bothFilters));
  EXPECT_FALSE(isSmallPicture(picture(10, std::nullopt), bothFilters));
}

TEST(OperationDecision, HandsAPhotoToResizingWhenItIsToShrink) {
  EXPECT_EQ(chooseHandler(photo(1), {}, {.resolution = Resolution::fit720p}), Handler::resize);
  EXPECT_EQ(chooseHandler(photo(1), {}, {.resolution = Resolution::original}), Handler::copy);
}

TEST(OperationDecision, CopiesAVideoWhateverTheResolution) {
  EXPECT_EQ(chooseHandler(video(1), {}, {.rotate = true, .resolution = Resolution::fit1080p}), Handler::copy);
}

TEST(OperationDecision, HandsATurnedPhotoToResizingOnlyWhenItIsToStandUpright) {
  EXPECT_EQ(chooseHandler(photo(1), turned(6), {.rotate = true}), Handler::resize);
  EXPECT_EQ(chooseHandler(photo(1), turned(6), {.rotate = false}), Handler::copy);
  EXPECT_EQ(chooseHandler(photo(1), turned(1), {.rotate = true}), Handler::copy);
  EXPECT_EQ(chooseHandler(photo(1), {}, {.rotate = true}), Handler::copy);
}

TEST(OperationDecision, KeepsTheSizeWhenNoResolutionIsChosen) {
  EXPECT_EQ(chooseHandler(photo(1), turned(1), {.rotate = true, .resolution = Resolution::none}),
            Handler::copy);
  EXPECT_EQ(chooseHandler(photo(1), turned(8), {.rotate = true, .resolution = Resolution::none}),
            Handler::resize);
}

TEST(OperationDecision, NamesAFileOfBothKindsAsAVideo) {
  EXPECT_EQ(mediaKindOf(photoAndVideo(1)), MediaKind::video);
  EXPECT_EQ(mediaKindOf(photo(1)), MediaKind::photo);
  EXPECT_EQ(mediaKindOf(other(1)), MediaKind::other);
}

}  // namespace kestrova
