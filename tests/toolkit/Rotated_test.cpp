#include "toolkit/Rotated.h"

#include "support/error_output.h"
#include "support/test_pattern.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

// Rotating images.

namespace kestrova {

using namespace Rotated;
using namespace test;

namespace {

const char* const otherAngleNotice =
    "This code has only been tested for multiples of 90 degrees. (TODO: test and remove this line)\n";

}  // namespace

TEST(ImageRotated, ReturnsTheReceiverItselfForFullTurns) {
  const ImagePtr image = imageOf(patternBitmap(4, 3));
  EXPECT_EQ(errorOutputOf([&] {
              EXPECT_EQ(imageRotated(image, 0), image);
              EXPECT_EQ(imageRotated(image, 360), image);
              EXPECT_EQ(imageRotated(image, -720), image);
            }),
            "");
  EXPECT_EQ(image->size(), QSizeF(4, 3));
}

TEST(ImageRotated, TurnsAQuarterCounterClockwise) {
  const ImagePtr image = imageOf(patternBitmap(40, 29));
  for (const float degrees : {90.0F, -270.0F, 450.0F}) {
    const ImagePtr turned = imageRotated(image, degrees);
    EXPECT_EQ(turned->size(), QSizeF(29, 40));
    EXPECT_EQ(turned->bestRepresentation().size(), QSize(29, 40));
    EXPECT_TRUE(showsEverywhere(turned->bestRepresentation(), [](int x, int y) {
      return patternColor(y, 28 - x);
    })) << degrees;
  }
}

TEST(ImageRotated, TurnsByAHalf) {
  const ImagePtr image = imageOf(patternBitmap(40, 29));
  for (const float degrees : {180.0F, -180.0F, 540.0F}) {
    const ImagePtr turned = imageRotated(image, degrees);
    EXPECT_EQ(turned->bestRepresentation().size(), QSize(40, 29));
    EXPECT_TRUE(showsEverywhere(turned->bestRepresentation(), [](int x, int y) {
      return patternColor(39 - x, 28 - y);
    })) << degrees;
  }
}

TEST(ImageRotated, TurnsAQuarterClockwise) {
  const ImagePtr image = imageOf(patternBitmap(41, 30));
  for (const float degrees : {270.0F, -90.0F, -450.0F}) {
    const ImagePtr turned = imageRotated(image, degrees);
    EXPECT_EQ(turned->bestRepresentation().size(), QSize(30, 41));
    EXPECT_TRUE(showsEverywhere(turned->bestRepresentation(), [](int x, int y) {
      return patternColor(40 - y, x);
    })) << degrees;
  }
}

TEST(ImageRotated, ExchangesTheSidesOfTheSizeForAQuarterTurn) {
  EXPECT_EQ(imageRotated(imageOf(patternBitmap(400, 300)), 90)->size(), QSizeF(300, 400));
}

TEST(ImageRotated, DrawsAnyOtherAngleIntoAWiderSquareAfterANotice) {
  const ImagePtr image = imageOf(patternBitmap(400, 300));
  ImagePtr turned;
  EXPECT_EQ(errorOutputOf([&] { turned = imageRotated(image, 45); }), otherAngleNotice);
  EXPECT_EQ(turned->size(), QSizeF(420, 420));
  EXPECT_EQ(qAlpha(colorAt(turned, 0, 0)), 0);
  EXPECT_EQ(qAlpha(colorAt(turned, 419, 0)), 0);
  EXPECT_EQ(qAlpha(colorAt(turned, 210, 210)), 255);
}

TEST(ImageRotated, TurnsAnyOtherAngleCounterClockwiseAboutTheCentre) {
  QImage bitmap(100, 20, QImage::Format_RGB32);
  bitmap.fill(Qt::red);
  for (int y = 0; y < 20; ++y) {
    for (int x = 50; x < 100; ++x) bitmap.setPixel(x, y, qRgb(0, 0, 255));
  }
  const ImagePtr turned = imageRotated(imageOf(bitmap), 45);
  EXPECT_EQ(colorAt(turned, 60 + 25, 60 + 25), qRgb(0, 0, 255));  // the right half points up
  EXPECT_EQ(colorAt(turned, 60 - 25, 60 - 25), qRgb(255, 0, 0));
  EXPECT_EQ(qAlpha(colorAt(turned, 60 + 25, 60 - 25)), 0);
}

TEST(ImageRotated, TreatsAnAngleThatIsNotANumberLikeAnyOtherAngle) {
  ImagePtr turned;
  const std::string said =
      errorOutputOf([&] { turned = imageRotated(imageOf(patternBitmap(8, 4)), std::nanf("")); });
  EXPECT_TRUE(said.starts_with(otherAngleNotice));
  EXPECT_EQ(turned->size(), QSizeF(28, 28));
}

TEST(SetImageAndFrame, GivesTheViewTheImagesSizeAndKeepsItsOrigin) {
  ImageView view{QRectF(10, 20, 300, 400), nullptr};
  const ImagePtr image = imageOf(patternBitmap(8, 5));
  setImageAndFrame(view, image);
  EXPECT_EQ(view.frame, QRectF(10, 20, 8, 5));
  EXPECT_EQ(view.image, image);
}

}  // namespace kestrova
