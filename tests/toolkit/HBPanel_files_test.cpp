#include "support/environment_variable.h"
#include "support/error_output.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"
#include "support/test_pattern.h"
#include "toolkit/HBPanel.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

// Images from files and bitmaps, and into them.

namespace kestrova {

using namespace HBPanel;
using imaging::ImageType;
using namespace test;

TEST(SaveImage, WritesEachTypeAndReturnsTrue) {
  const TemporaryFolder folder;
  const Image unused{QSizeF()};
  const QImage pattern = patternBitmap(40, 30);
  EXPECT_TRUE(saveImage(unused, *imageOf(pattern), ImageType::png, {}, folder / "a.png"));
  EXPECT_TRUE(saveImage(unused, *imageOf(pattern), ImageType::tiff, {}, folder / "a.tif"));
  EXPECT_TRUE(
      saveImage(unused, *imageOf(pattern), ImageType::jpeg, {.compressionFactor = 1}, folder / "a.jpg"));
  EXPECT_TRUE(showsEverywhere(thumbnailForFile(unused, {}, folder / "a.png"), patternColor));
  EXPECT_TRUE(showsEverywhere(thumbnailForFile(unused, {}, folder / "a.tif"), patternColor));
  EXPECT_EQ(thumbnailForFile(unused, {}, folder / "a.jpg").size(), QSize(40, 30));
}

TEST(SaveImage, ReplacesAFileThatIsThere) {
  const TemporaryFolder folder;
  const Path path = writeFile(folder / "a.png", "old");
  EXPECT_TRUE(saveImage(Image(QSizeF()), *imageOf(patternBitmap(4, 3)), ImageType::png, {}, path));
  EXPECT_EQ(Image::fromFile(path)->size(), QSizeF(4, 3));
  EXPECT_EQ(filesBelow(folder.path()), std::vector<std::string>{"a.png"});
}

TEST(SaveImage, IntoAFolderThatDoesNotExistFailsAndLeavesNoFile) {
  const TemporaryFolder folder;
  EXPECT_FALSE(saveImage(Image(QSizeF()), *imageOf(patternBitmap(4, 3)), ImageType::jpeg, {},
                         folder / "none" / "a.jpg"));
  EXPECT_FALSE(exists(folder / "none"));
}

TEST(SaveImage, FailsForAnImageWithoutRepresentation) {
  const TemporaryFolder folder;
  EXPECT_FALSE(saveImage(Image(QSizeF(4, 3)), Image(QSizeF(4, 3)), ImageType::jpeg, {}, folder / "a.jpg"));
  EXPECT_FALSE(exists(folder / "a.jpg"));
}

TEST(ThumbnailForFile, ExpandsATilde) {
  const TemporaryFolder folder;
  const EnvironmentVariable home("HOME", folder.path().c_str());
  writeFile(folder / "a.jpg", jpegPhoto({.width = 64, .height = 48}));
  EXPECT_EQ(thumbnailForFile(Image(QSizeF()), "unused", "~/a.jpg").size(), QSize(64, 48));
  EXPECT_TRUE(thumbnailForFile(Image(QSizeF()), "unused", "~nobody-of-this-name/a.jpg").isNull());
}

TEST(ThumbnailForFile, IsAlwaysMadeFromTheWholeImageAndUpright) {
  const TemporaryFolder folder;
  const Path path = writeFile(folder / "a.jpg", jpegPhoto({.orientation = 6, .thumbnail = true}));
  EXPECT_EQ(thumbnailForFile(Image(QSizeF()), {}, path).size(), QSize(480, 640));
}

TEST(ThumbnailForFile, IsSilentlyNullIfThereIsNoImage) {
  const TemporaryFolder folder;
  const Path text = writeFile(folder / "a.jpg", "no photo");
  EXPECT_EQ(errorOutputOf([&] {
              EXPECT_TRUE(thumbnailForFile(Image(QSizeF()), {}, folder / "missing.jpg").isNull());
              EXPECT_TRUE(thumbnailForFile(Image(QSizeF()), {}, text).isNull());
            }),
            "");
}

TEST(ImageFromBitmap, HasItsSizeInPixelsAndShowsIt) {
  const ImagePtr image = imageFromCGImageRef(patternBitmap(40, 29));
  EXPECT_EQ(image->size(), QSizeF(40, 29));
  EXPECT_TRUE(showsEverywhere(onlyBitmap(image), patternColor));
}

TEST(ImageFromBitmap, IsEmptyForANullBitmap) {
  const ImagePtr image = imageFromCGImageRef(QImage());
  EXPECT_FALSE(image->isValid());
  EXPECT_EQ(image->size(), QSizeF(0, 0));
}

TEST(BitmapFromImage, ShowsTheFirstRepresentation) {
  const ImagePtr image = imageOf(patternBitmap(40, 29));
  image->addRepresentation(patternBitmap(60, 60));
  EXPECT_TRUE(showsEverywhere(nsImageToCGImageRef(*image), patternColor));
  EXPECT_EQ(nsImageToCGImageRef(*image).size(), QSize(40, 29));
}

TEST(BitmapFromImage, NeedsNoRepresentationButTheFirst) {
  const ImagePtr image = imageOf(patternBitmap(40, 29));
  image->addRepresentation(QImage());
  EXPECT_EQ(nsImageToCGImageRef(*image).size(), QSize(40, 29));
  const TemporaryFolder folder;
  EXPECT_TRUE(saveImage(*image, *image, ImageType::png, {}, folder / "a.png"));
  EXPECT_EQ(Image::fromFile(folder / "a.png")->size(), QSizeF(40, 29));
}

TEST(BitmapFromImage, KeepsTransparency) {
  QImage bitmap(3, 1, QImage::Format_ARGB32);
  bitmap.setPixel(0, 0, qRgba(255, 0, 0, 255));
  bitmap.setPixel(1, 0, qRgba(0, 255, 0, 128));
  bitmap.setPixel(2, 0, qRgba(0, 0, 0, 0));
  EXPECT_TRUE(looksLike(nsImageToCGImageRef(*imageOf(bitmap)), bitmap, byRounding));
}

TEST(BitmapFromImage, IsNullForAnImageWithoutRepresentation) {
  EXPECT_TRUE(nsImageToCGImageRef(Image(QSizeF(4, 3))).isNull());
}

TEST(SaveAsJpeg, WritesAJpegOfTheBestQuality) {
  const TemporaryFolder folder;
  const ImagePtr image = Image::fromData(pngPhoto({}));
  saveAsJpegWithName(*image, folder / "a.anything");
  EXPECT_TRUE(readFile(folder / "a.anything").starts_with("\xff\xd8\xff"));
  EXPECT_TRUE(looksLike(Image::fromFile(folder / "a.anything")->bestRepresentation(),
                        image->bestRepresentation(), byTheBestJpeg));
}

TEST(SaveAsJpeg, DoesNotExpandATilde) {
  const TemporaryFolder folder;
  const EnvironmentVariable home("HOME", folder.path().c_str());
  saveAsJpegWithName(*imageOf(patternBitmap(4, 3)), "~/a.jpg");
  EXPECT_FALSE(saveImage(Image(QSizeF()), *imageOf(patternBitmap(4, 3)), ImageType::png, {}, "~/a.png"));
  EXPECT_EQ(filesBelow(folder.path()), std::vector<std::string>());
}

TEST(SaveAsJpeg, SaysNothingWhenItCannot) {
  const TemporaryFolder folder;
  EXPECT_EQ(errorOutputOf([&] {
              saveAsJpegWithName(*imageOf(patternBitmap(4, 3)), folder / "none" / "a.jpg");
              saveAsJpegWithName(Image(QSizeF(4, 3)), folder / "a.jpg");
            }),
            "");
  EXPECT_EQ(filesBelow(folder.path()), std::vector<std::string>());
}

}  // namespace kestrova
