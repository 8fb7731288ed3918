#include "toolkit/HBPanel.h"

#include "support/error_output.h"
#include "toolkit/quarters.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

// Resizing and rotating images.

namespace kestrova {

using namespace HBPanel;
using namespace test;

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
  constexpr QRgb average = qRgb(32, 32, 32);
  constexpr int filterError = 6;
  for (int x = 10; x < 90; ++x) EXPECT_TRUE(isNear(colorAt(resized, x, 40), average, filterError)) << x;
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
  constexpr int overshoot = 2;  // of a Lanczos filter; a linear one has none
  EXPECT_GT(brightest, 150 + overshoot);
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
  constexpr int filterError = 20;
  EXPECT_NEAR(qAlpha(color), 128, filterError);
  EXPECT_EQ(qRed(color), 255);
}

TEST(ImageResize, ReportsAnInvalidImageAndReturnsNull) {
  const auto image = std::make_shared<Image>(QSizeF(100, 100));
  EXPECT_EQ(errorOutputOf([&] { EXPECT_EQ(imageResize(image, QSizeF(10, 10)), nullptr); }),
            "Invalid Image\n");
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

TEST(RotateImage, DoesNotTurnByAnglesOutsideATurn) {
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

TEST(VectorLength, IsTheRootOfTheSumOfSquaresInSinglePrecision) {
  EXPECT_EQ(vectorLength(3, 4), 5.0F);
  EXPECT_EQ(vectorLength(-1, 1), static_cast<float>(std::sqrt(2.0)));
}

}  // namespace kestrova
