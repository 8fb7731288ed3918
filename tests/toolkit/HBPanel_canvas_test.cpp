#include "toolkit/HBPanel.h"
#include "toolkit/quarters.h"

#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

// Images on the large canvas, and those drawn from nothing.

namespace kestrova {

using namespace HBPanel;
using namespace test;

namespace {

const QSizeF canvasSize(8000, 6000);
const QSize pictureSize(80, 60);

QRgb pictureColor(int x, int y) { return quarterColor(x, y, pictureSize.width(), pictureSize.height()); }
const QRgb lowerLeft = pictureColor(0, 0);
const QRgb lowerRight = pictureColor(79, 0);
const QRgb upperLeft = pictureColor(0, 59);
const QRgb upperRight = pictureColor(79, 59);

/// A picture of this size in points that shows four quarters of different colours.
ImagePtr quartersImage(QSizeF size) {
  auto image = std::make_shared<Image>(size);
  image->addRepresentation(quartersBitmap(pictureSize.width(), pictureSize.height()));
  return image;
}

/// A place on the canvas, counted from the bottom left, and the colour there.
struct Spot {
  int x = 0;
  int y = 0;
  QRgb color = 0;
};

/// An image put on the canvas and what is seen there.
struct Placing {
  std::string name;
  QSizeF image;
  bool flipped = false;
  float amount = 0;
  QSizeF imageAfterwards;
  std::vector<Spot> spots;
};

void PrintTo(const Placing& placing, std::ostream* stream) { *stream << placing.name; }

class CanvasPlacing : public testing::TestWithParam<Placing> {};

}  // namespace

TEST(CreateScalesImage, CopiesAnImageAtLeastAsLargeAsTheCanvasWithoutDrawing) {
  const ImagePtr image = quartersImage(QSizeF(8000, 6000));
  const ImagePtr copied = createScalesImage(image, false, 1);
  EXPECT_NE(copied, image);
  EXPECT_EQ(copied->size(), QSizeF(8000, 6000));
  EXPECT_EQ(onlyBitmap(copied).constBits(), onlyBitmap(image).constBits());

  const ImagePtr larger = quartersImage(QSizeF(9000.5, 7000));
  EXPECT_EQ(createScalesImage(larger, true, 1)->size(), QSizeF(8000, 6000));
  EXPECT_EQ(larger->size(), QSizeF(8000, 6000));
  EXPECT_TRUE(larger->isFlipped());
}

TEST_P(CanvasPlacing, ShowsTheImageInItsPlaceWhereTheCanvasIsWhite) {
  const Placing& placing = GetParam();
  const ImagePtr image = quartersImage(placing.image);
  const ImagePtr canvas = createScalesImage(image, placing.flipped, placing.amount);
  EXPECT_EQ(canvas->size(), canvasSize);
  EXPECT_EQ(onlyBitmap(canvas).size(), canvasSize.toSize());
  EXPECT_EQ(image->size(), placing.imageAfterwards);
  for (const Spot& spot : placing.spots) {
    EXPECT_EQ(colorAt(canvas, spot.x, spot.y), spot.color) << spot.x << ", " << spot.y;
  }
}

// White up to half of 6000; the image, now of the canvas's size, begins at (6000 - 4000) / 2.
const Placing wide{.name = "WideImagesVertically",
                   .image = QSizeF(9000, 4000),
                   .amount = 0.5F,
                   .imageAfterwards = canvasSize,
                   .spots = {{.x = 10, .y = 0, .color = white},
                             {.x = 7990, .y = 999, .color = white},
                             {.x = 10, .y = 1000, .color = lowerLeft},
                             {.x = 7990, .y = 2999, .color = lowerRight},
                             {.x = 10, .y = 3000, .color = transparent},
                             {.x = 7990, .y = 5999, .color = transparent}}};

// White up to half of 8000; the image begins at (8000 - 4000) / 2 and is cut off at the right.
const Placing tall{.name = "TallImagesHorizontally",
                   .image = QSizeF(4000, 7000),
                   .amount = 0.5F,
                   .imageAfterwards = canvasSize,
                   .spots = {{.x = 1999, .y = 0, .color = white},
                             {.x = 1999, .y = 3999, .color = white},
                             {.x = 2000, .y = 2900, .color = lowerLeft},
                             {.x = 2000, .y = 3999, .color = upperLeft},
                             {.x = 7999, .y = 10, .color = lowerRight},
                             {.x = 2000, .y = 4000, .color = transparent},
                             {.x = 1999, .y = 4000, .color = transparent}}};

// White up to 3200; the image spans 2000 to 6000 and 1500 to 4500 and is upside down.
const Placing small{.name = "SmallImagesBothWaysInTheirOwnSize",
                    .image = QSizeF(4000, 3000),
                    .flipped = true,
                    .amount = 0.4F,
                    .imageAfterwards = QSizeF(4000, 3000),
                    .spots = {{.x = 4000, .y = 1499, .color = white},
                              {.x = 1999, .y = 1500, .color = white},
                              {.x = 6000, .y = 3199, .color = white},
                              {.x = 2000, .y = 1500, .color = upperLeft},
                              {.x = 5999, .y = 1500, .color = upperRight},
                              {.x = 2000, .y = 3100, .color = lowerLeft},
                              {.x = 5999, .y = 3200, .color = transparent},
                              {.x = 4000, .y = 5000, .color = transparent}}};

// White everywhere; the image begins at (6000 - 10) / 2.
const Placing excessive{.name = "OnAllOfTheCanvasWhenTheAmountExceedsIt",
                        .image = QSizeF(8000, 10),
                        .amount = 1e30F,
                        .imageAfterwards = QSizeF(8000, 10),
                        .spots = {{.x = 0, .y = 5999, .color = white},
                                  {.x = 7999, .y = 0, .color = white},
                                  {.x = 10, .y = 2996, .color = lowerLeft}}};

INSTANTIATE_TEST_SUITE_P(Centres, CanvasPlacing, testing::Values(wide, tall, small, excessive),
                         [](const auto& test) { return test.param.name; });

TEST(CreateScalesImage, ShowsNothingWhereNothingIsWhite) {
  for (const float amount : {0.0F, -1.0F, std::nanf("")}) {
    const ImagePtr canvas = createScalesImage(quartersImage(QSizeF(4000, 3000)), false, amount);
    EXPECT_EQ(colorAt(canvas, 4000, 3000), transparent);
    EXPECT_EQ(colorAt(canvas, 4000, 0), transparent);
  }
}

TEST(SetSmoothingEffect, GivesTheImageThePixelSizeOfItsFirstRepresentation) {
  const ImagePtr image = quartersImage(QSizeF(10, 10));
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
  // Rows count from the top here. Beside each that is not obvious: the distances from the corners, divided by
  // 1.5.
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

}  // namespace kestrova
