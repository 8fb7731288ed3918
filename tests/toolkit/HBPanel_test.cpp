#include "toolkit/HBPanel.h"

#include "support/environment_variable.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"
#include "support/test_pattern.h"

#include <cmath>
#include <limits>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace kestrova {

using namespace HBPanel;
using imaging::ImageType;
using test::colorAt;
using test::imageOf;
using test::isNear;
using test::patternBitmap;
using test::patternColor;
using test::showsEverywhere;
using test::TemporaryFolder;

namespace {

constexpr QRgb white = qRgb(255, 255, 255);
constexpr QRgb transparent = 0;

/// Four quarters of different colours; y counts from the bottom.
QRgb quarterColor(int x, int y, int width, int height) {
  const bool right = x >= width / 2;
  const bool upper = y >= height / 2;
  return right ? (upper ? qRgb(255, 0, 0) : qRgb(0, 255, 0)) : (upper ? qRgb(0, 0, 255) : qRgb(255, 255, 0));
}

QImage quartersBitmap(int width, int height) {
  QImage bitmap(width, height, QImage::Format_RGB32);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) bitmap.setPixel(x, height - 1 - y, quarterColor(x, y, width, height));
  }
  return bitmap;
}

/// A picture of this size in points that shows four quarters of different colours.
ImagePtr quartersImage(double width, double height) {
  auto image = std::make_shared<Image>(QSizeF(width, height));
  image->addRepresentation(quartersBitmap(80, 60));
  return image;
}

const QImage& onlyBitmap(const ImagePtr& image) {
  EXPECT_EQ(image->representations().size(), 1U);
  return image->representations().at(0);
}

}  // namespace

TEST(ImageResize, ReturnsThatSizeAndGivesItToTheSourceToo) {
  const ImagePtr source = imageOf(quartersBitmap(4000, 3000));
  const ImagePtr resized = imageResize(source, QSizeF(1440, 1080));
  EXPECT_EQ(resized->size(), QSizeF(1440, 1080));
  EXPECT_EQ(onlyBitmap(resized).size(), QSize(1440, 1080));
  EXPECT_EQ(source->size(), QSizeF(1440, 1080));
  EXPECT_TRUE(source->scalesWhenResized());
  EXPECT_EQ(onlyBitmap(source).size(), QSize(4000, 3000));
}

TEST(ImageResize, KeepsPixelsThatNeedNoScaling) {
  const ImagePtr resized = imageResize(imageOf(patternBitmap(40, 29)), QSizeF(40, 29));
  EXPECT_TRUE(showsEverywhere(onlyBitmap(resized), patternColor));
}

TEST(ImageResize, AveragesAllPixelsWhenItShrinks) {
  QImage stripes(800, 600, QImage::Format_RGB32);
  for (int y = 0; y < 600; ++y) {
    for (int x = 0; x < 800; ++x) stripes.setPixel(x, y, x % 8 == 0 ? white : qRgb(0, 0, 0));
  }
  const ImagePtr resized = imageResize(imageOf(stripes), QSizeF(100, 75));
  for (int x = 10; x < 90; ++x) EXPECT_TRUE(isNear(colorAt(resized, x, 40), qRgb(32, 32, 32), 6)) << x;
}

TEST(ImageResize, KeepsAnEdgeAsSharpAsThePhotosOfARun) {
  QImage halves(40, 8, QImage::Format_RGB32);
  halves.fill(qRgb(100, 100, 100));
  for (int y = 0; y < 8; ++y) {
    for (int x = 20; x < 40; ++x) halves.setPixel(x, y, qRgb(150, 150, 150));
  }
  const ImagePtr resized = imageResize(imageOf(halves), QSizeF(80, 8));
  int brightest = 0;
  for (int x = 0; x < 80; ++x) brightest = std::max(brightest, qRed(onlyBitmap(resized).pixel(x, 4)));
  EXPECT_GT(brightest, 152);  // a Lanczos filter overshoots, a linear one does not
  EXPECT_EQ(qRed(onlyBitmap(resized).pixel(0, 4)), 100);
}

TEST(ImageResize, DoesNotKeepTheAspectAndStaysUpright) {
  const ImagePtr resized = imageResize(imageOf(quartersBitmap(80, 60)), QSizeF(30, 90));
  EXPECT_EQ(onlyBitmap(resized).size(), QSize(30, 90));
  for (const int x : {3, 26}) {
    for (const int y : {5, 84}) EXPECT_EQ(colorAt(resized, x, y), quarterColor(x, y, 30, 90));
  }
}

TEST(ImageResize, CoversEveryPixelOfASizeWithFractions) {
  const ImagePtr resized = imageResize(imageOf(quartersBitmap(80, 60)), QSizeF(40.6, 30.3));
  EXPECT_EQ(resized->size(), QSizeF(40.6, 30.3));
  EXPECT_EQ(onlyBitmap(resized).size(), QSize(41, 30));
  for (const int x : {0, 40}) {
    for (const int y : {0, 29}) EXPECT_EQ(colorAt(resized, x, y), quarterColor(x, y, 41, 30));
  }
}

TEST(ImageResize, DoesNotDarkenColoursBesideTransparency) {
  QImage bitmap(64, 64, QImage::Format_ARGB32);
  for (int y = 0; y < 64; ++y) {
    for (int x = 0; x < 64; ++x) bitmap.setPixel(x, y, x % 2 == 0 ? qRgba(0, 0, 0, 0) : white);
  }
  const QRgb color = colorAt(imageResize(imageOf(bitmap), QSizeF(16, 16)), 8, 8);
  EXPECT_NEAR(qAlpha(color), 128, 20);
  EXPECT_EQ(qRed(color), 255);
}

TEST(ImageResize, TellsOfAnInvalidImageAndReturnsNull) {
  const auto image = std::make_shared<Image>(QSizeF(100, 100));
  testing::internal::CaptureStderr();
  EXPECT_EQ(imageResize(image, QSizeF(10, 10)), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Invalid Image\n");
  EXPECT_TRUE(image->scalesWhenResized());
  EXPECT_EQ(image->size(), QSizeF(100, 100));
}

TEST(ImageResize, WorksOnSeveralThreadsAtOnce) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([] {
      const ImagePtr resized = imageResize(imageOf(quartersBitmap(80, 60)), QSizeF(40, 30));
      EXPECT_EQ(colorAt(resized, 39, 0), quarterColor(39, 0, 40, 30));
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST(ImageResize, RefusesSizesThatCannotBeDrawn) {
  const ImagePtr image = imageOf(patternBitmap(4, 3));
  for (const QSizeF size : {QSizeF(0, 10), QSizeF(10, -1), QSizeF(std::nan(""), 10), QSizeF(1e6, 1e6),
                            QSizeF(std::numeric_limits<double>::infinity(), 1)}) {
    EXPECT_EQ(imageResize(image, size), nullptr);
  }
  EXPECT_EQ(image->size(), QSizeF(4, 3));
}

TEST(RotateImage, SnapsToTheQuarterTurnAtOrAboveTheAngle) {
  const ImagePtr image = imageOf(patternBitmap(30, 30));
  const auto turned = [&](float degrees) { return onlyBitmap(rotateImage(image, degrees)); };
  for (const float degrees : {0.5F, 90.0F}) {
    EXPECT_TRUE(showsEverywhere(turned(degrees), [](int x, int y) { return patternColor(y, 29 - x); }));
  }
  for (const float degrees : {90.0001F, 100.0F, 180.0F}) {
    EXPECT_TRUE(showsEverywhere(turned(degrees), [](int x, int y) { return patternColor(29 - x, 29 - y); }));
  }
  for (const float degrees : {180.0001F, 270.0F}) {
    EXPECT_TRUE(showsEverywhere(turned(degrees), [](int x, int y) { return patternColor(29 - y, x); }));
  }
  for (const float degrees : {270.0001F, 360.0F}) EXPECT_TRUE(showsEverywhere(turned(degrees), patternColor));
}

TEST(RotateImage, DoesNotTurnByAnglesThatAreNoTurn) {
  const ImagePtr image = imageOf(patternBitmap(40, 29));
  for (const float degrees : {0.0F, -90.0F, 360.001F, 1000.0F, std::nanf("")}) {
    EXPECT_TRUE(showsEverywhere(onlyBitmap(rotateImage(image, degrees)), patternColor)) << degrees;
  }
}

TEST(RotateImage, TurnsImagesThatAreNotSquareByAHalfPixelByPixel) {
  const ImagePtr image = imageOf(patternBitmap(41, 30));
  EXPECT_TRUE(showsEverywhere(onlyBitmap(rotateImage(image, 180)),
                              [](int x, int y) { return patternColor(40 - x, 29 - y); }));
}

TEST(RotateImage, AlwaysHasTheSizeOfTheSource) {
  const ImagePtr image = imageOf(patternBitmap(41, 30));
  for (const float degrees : {-1.0F, 45.0F, 100.0F, 200.0F, 300.0F, 400.0F}) {
    EXPECT_EQ(rotateImage(image, degrees)->size(), QSizeF(41, 30));
  }
}

TEST(RotateImage, FillsTheSourcesSizeWithAQuarterTurnOfAnImageThatIsNotSquare) {
  const ImagePtr image = imageOf(quartersBitmap(80, 41));
  const ImagePtr left = rotateImage(image, 90);
  const ImagePtr right = rotateImage(image, 270);
  for (const int x : {0, 30, 50, 79}) {
    for (const int y : {0, 10, 30, 40}) {
      // Turned counter-clockwise, what was at the right is at the top; the sides are stretched to fit.
      EXPECT_EQ(colorAt(left, x, y), quarterColor(y < 20 ? 0 : 79, x < 40 ? 40 : 0, 80, 40))
          << x << ", " << y;
      EXPECT_EQ(colorAt(right, x, y), quarterColor(y < 20 ? 79 : 0, x < 40 ? 0 : 40, 80, 40))
          << x << ", " << y;
    }
  }
}

TEST(RotateImage, SquashesAnImageThatIsNotSquareByAFullTurn) {
  const ImagePtr turned = rotateImage(imageOf(quartersBitmap(80, 40)), 360);
  EXPECT_EQ(colorAt(turned, 5, 5), quarterColor(0, 0, 80, 40));
  EXPECT_EQ(colorAt(turned, 35, 5), quarterColor(79, 0, 80, 40));
  EXPECT_EQ(colorAt(turned, 5, 38), quarterColor(0, 0, 80, 40));  // stretched beyond the upper edge
  EXPECT_EQ(colorAt(turned, 40, 5), transparent);
  EXPECT_EQ(colorAt(turned, 79, 39), transparent);
}

TEST(RotateImage, DrawsTheRepresentationWithTheMostPixels) {
  const ImagePtr image = imageOf(QImage(2, 2, QImage::Format_RGB32));
  image->addRepresentation(patternBitmap(30, 30));
  image->setSize(QSizeF(30, 30));
  EXPECT_TRUE(showsEverywhere(onlyBitmap(rotateImage(image, 180)),
                              [](int x, int y) { return patternColor(29 - x, 29 - y); }));
}

TEST(CreateScalesImage, CopiesAnImageAtLeastAsLargeAsTheCanvasWithoutDrawing) {
  const ImagePtr image = quartersImage(8000, 6000);
  const ImagePtr copied = createScalesImage(image, false, 1);
  EXPECT_NE(copied, image);
  EXPECT_EQ(copied->size(), QSizeF(8000, 6000));
  EXPECT_EQ(onlyBitmap(copied).constBits(), onlyBitmap(image).constBits());

  const ImagePtr larger = quartersImage(9000.5, 7000);
  EXPECT_EQ(createScalesImage(larger, true, 1)->size(), QSizeF(8000, 6000));
  EXPECT_EQ(larger->size(), QSizeF(8000, 6000));
  EXPECT_TRUE(larger->isFlipped());
}

TEST(CreateScalesImage, CentresAWideImageVerticallyWhereTheCanvasIsWhite) {
  const ImagePtr image = quartersImage(9000, 4000);
  const ImagePtr canvas = createScalesImage(image, false, 0.5F);
  EXPECT_EQ(canvas->size(), QSizeF(8000, 6000));
  EXPECT_EQ(onlyBitmap(canvas).size(), QSize(8000, 6000));
  EXPECT_EQ(image->size(), QSizeF(8000, 6000));
  // White up to half of 6000; the image, now of the canvas's size, begins at (6000 - 4000) / 2.
  EXPECT_EQ(colorAt(canvas, 10, 0), white);
  EXPECT_EQ(colorAt(canvas, 7990, 999), white);
  EXPECT_EQ(colorAt(canvas, 10, 1000), quarterColor(0, 0, 80, 60));
  EXPECT_EQ(colorAt(canvas, 7990, 2999), quarterColor(79, 0, 80, 60));
  EXPECT_EQ(colorAt(canvas, 10, 3000), transparent);
  EXPECT_EQ(colorAt(canvas, 7990, 5999), transparent);
}

TEST(CreateScalesImage, CentresATallImageHorizontallyAndMeasuresTheWhiteInEightThousandths) {
  const ImagePtr image = quartersImage(4000, 7000);
  const ImagePtr canvas = createScalesImage(image, false, 0.5F);
  EXPECT_EQ(image->size(), QSizeF(8000, 6000));
  // White up to half of 8000; the image begins at (8000 - 4000) / 2 and is cut off at the right.
  EXPECT_EQ(colorAt(canvas, 1999, 0), white);
  EXPECT_EQ(colorAt(canvas, 1999, 3999), white);
  EXPECT_EQ(colorAt(canvas, 2000, 2900), quarterColor(0, 0, 80, 60));
  EXPECT_EQ(colorAt(canvas, 2000, 3999), quarterColor(0, 59, 80, 60));
  EXPECT_EQ(colorAt(canvas, 7999, 10), quarterColor(79, 0, 80, 60));
  EXPECT_EQ(colorAt(canvas, 2000, 4000), transparent);
  EXPECT_EQ(colorAt(canvas, 1999, 4000), transparent);
}

TEST(CreateScalesImage, CentresASmallImageBothWaysInItsOwnSize) {
  const ImagePtr image = quartersImage(4000, 3000);
  const ImagePtr canvas = createScalesImage(image, true, 0.4F);
  EXPECT_EQ(image->size(), QSizeF(4000, 3000));
  // White up to 3200; the image spans 2000 to 6000 and 1500 to 4500 and is upside down.
  EXPECT_EQ(colorAt(canvas, 4000, 1499), white);
  EXPECT_EQ(colorAt(canvas, 1999, 1500), white);
  EXPECT_EQ(colorAt(canvas, 6000, 3199), white);
  EXPECT_EQ(colorAt(canvas, 2000, 1500), quarterColor(0, 59, 80, 60));
  EXPECT_EQ(colorAt(canvas, 5999, 1500), quarterColor(79, 59, 80, 60));
  EXPECT_EQ(colorAt(canvas, 2000, 3100), quarterColor(0, 0, 80, 60));
  EXPECT_EQ(colorAt(canvas, 5999, 3200), transparent);
  EXPECT_EQ(colorAt(canvas, 4000, 5000), transparent);
}

TEST(CreateScalesImage, ShowsNothingWhereNothingIsWhite) {
  for (const float amount : {0.0F, -1.0F, std::nanf("")}) {
    const ImagePtr canvas = createScalesImage(quartersImage(4000, 3000), false, amount);
    EXPECT_EQ(colorAt(canvas, 4000, 3000), transparent);
    EXPECT_EQ(colorAt(canvas, 4000, 0), transparent);
  }
}

TEST(CreateScalesImage, FillsTheWholeCanvasWhenTheAmountExceedsIt) {
  const ImagePtr canvas = createScalesImage(quartersImage(8000, 10), false, 1e30F);
  EXPECT_EQ(colorAt(canvas, 0, 5999), white);
  EXPECT_EQ(colorAt(canvas, 7999, 0), white);
  EXPECT_EQ(colorAt(canvas, 10, 2996), quarterColor(0, 0, 80, 60));
}

TEST(SetSmoothingEffect, GivesTheImageThePixelSizeOfItsFirstRepresentation) {
  const ImagePtr image = quartersImage(10, 10);
  image->addRepresentation(patternBitmap(200, 100));
  EXPECT_TRUE(setSmoothingEffect(image));
  EXPECT_EQ(image->size(), QSizeF(80, 60));
}

TEST(SetSmoothingEffect, LeavesTheSizeWhereTheRepresentationHasNoPixels) {
  const auto image = std::make_shared<Image>(QSizeF(10, 20));
  image->addRepresentation(QImage());
  EXPECT_FALSE(setSmoothingEffect(image));
  EXPECT_EQ(image->size(), QSizeF(10, 20));
}

TEST(SetSmoothingEffect, ThrowsWhereThereIsNoRepresentation) {
  EXPECT_THROW(setSmoothingEffect(std::make_shared<Image>(QSizeF(10, 20))), std::out_of_range);
}

TEST(PrettyGradientImage, HasRingsAroundThreeCornersOfAField) {
  const ImagePtr image = prettyGradientImage(QSizeF(600.9, 500.2));
  EXPECT_EQ(image->size(), QSizeF(600.9, 500.2));
  const QImage& bitmap = onlyBitmap(image);
  ASSERT_EQ(bitmap.size(), QSize(600, 500));
  // Rows count from the top here. Beside each, the distances from the corners, by 1.5, where it is not plain.
  EXPECT_EQ(bitmap.pixel(0, 0), qRgb(170, 0, 240));
  EXPECT_EQ(bitmap.pixel(255, 255), qRgb(170, 240, 0));
  EXPECT_EQ(bitmap.pixel(0, 255), qRgb(0, 170, 170));
  EXPECT_EQ(bitmap.pixel(255, 0), qRgb(240, 170, 170));
  EXPECT_EQ(bitmap.pixel(30, 40), qRgb(145, 33, 207));   // 144.72, 33.33, 207.47
  EXPECT_EQ(bitmap.pixel(382, 0), qRgb(51, 255, 190));   // 306.19, 254.67, 189.92
  EXPECT_EQ(bitmap.pixel(383, 0), qRgb(52, 0, 190));     // 306.75, 255.33, 190.22
  EXPECT_EQ(bitmap.pixel(599, 499), qRgb(176, 10, 26));  // 431.19, 519.74, 281.17
}

TEST(PrettyGradientImage, HasNoRepresentationWithoutAWholePixelOrBeyondTheBound) {
  EXPECT_TRUE(prettyGradientImage(QSizeF(0.5, 10))->representations().empty());
  EXPECT_TRUE(prettyGradientImage(QSizeF(-5, 10))->representations().empty());
  EXPECT_TRUE(prettyGradientImage(QSizeF(1e9, 1e9))->representations().empty());
}

TEST(VectorLength, IsTheRootOfTheSumOfSquaresInSinglePrecision) {
  EXPECT_EQ(vectorLength(3, 4), 5.0F);
  EXPECT_EQ(vectorLength(-1, 1), static_cast<float>(std::sqrt(2.0)));
}

TEST(SaveImage, WritesEachTypeAndSaysSo) {
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
  const Path path = test::writeFile(folder / "a.png", "old");
  EXPECT_TRUE(saveImage(Image(QSizeF()), *imageOf(patternBitmap(4, 3)), ImageType::png, {}, path));
  EXPECT_EQ(Image::fromFile(path)->size(), QSizeF(4, 3));
  EXPECT_EQ(test::filesBelow(folder.path()), std::vector<std::string>{"a.png"});
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
  const test::EnvironmentVariable home("HOME", folder.path().c_str());
  test::writeFile(folder / "a.jpg", test::jpegPhoto({.width = 64, .height = 48}));
  EXPECT_EQ(thumbnailForFile(Image(QSizeF()), "unused", "~/a.jpg").size(), QSize(64, 48));
  EXPECT_TRUE(thumbnailForFile(Image(QSizeF()), "unused", "~nobody-of-this-name/a.jpg").isNull());
}

TEST(ThumbnailForFile, IsAlwaysMadeFromTheWholeImageAndUpright) {
  const TemporaryFolder folder;
  const Path path = test::writeFile(folder / "a.jpg", test::jpegPhoto({.orientation = 6, .thumbnail = true}));
  EXPECT_EQ(thumbnailForFile(Image(QSizeF()), {}, path).size(), QSize(480, 640));
}

TEST(ThumbnailForFile, IsNullInSilenceWhereThereIsNoImage) {
  const TemporaryFolder folder;
  const Path text = test::writeFile(folder / "a.jpg", "no photo");
  testing::internal::CaptureStderr();
  EXPECT_TRUE(thumbnailForFile(Image(QSizeF()), {}, folder / "missing.jpg").isNull());
  EXPECT_TRUE(thumbnailForFile(Image(QSizeF()), {}, text).isNull());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
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
  EXPECT_TRUE(test::looksLike(nsImageToCGImageRef(*imageOf(bitmap)), bitmap, 1));
}

TEST(BitmapFromImage, IsNullForAnImageWithoutRepresentation) {
  EXPECT_TRUE(nsImageToCGImageRef(Image(QSizeF(4, 3))).isNull());
}

TEST(SaveAsJpeg, WritesAJpegOfTheBestQuality) {
  const TemporaryFolder folder;
  const ImagePtr image = Image::fromData(test::pngPhoto({}));
  saveAsJpegWithName(*image, folder / "a.anything");
  EXPECT_TRUE(test::readFile(folder / "a.anything").starts_with("\xff\xd8\xff"));
  EXPECT_TRUE(test::looksLike(Image::fromFile(folder / "a.anything")->bestRepresentation(),
                              image->bestRepresentation(), 4));
}

TEST(SaveAsJpeg, DoesNotExpandATilde) {
  const TemporaryFolder folder;
  const test::EnvironmentVariable home("HOME", folder.path().c_str());
  saveAsJpegWithName(*imageOf(patternBitmap(4, 3)), "~/a.jpg");
  EXPECT_FALSE(saveImage(Image(QSizeF()), *imageOf(patternBitmap(4, 3)), ImageType::png, {}, "~/a.png"));
  EXPECT_EQ(test::filesBelow(folder.path()), std::vector<std::string>());
}

TEST(SaveAsJpeg, SaysNothingWhenItCannot) {
  const TemporaryFolder folder;
  testing::internal::CaptureStderr();
  saveAsJpegWithName(*imageOf(patternBitmap(4, 3)), folder / "none" / "a.jpg");
  saveAsJpegWithName(Image(QSizeF(4, 3)), folder / "a.jpg");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(test::filesBelow(folder.path()), std::vector<std::string>());
}

}  // namespace kestrova
