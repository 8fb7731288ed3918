#pragma once

#include "toolkit/image.h"

#include <QColor>
#include <QImage>
#include <cstdlib>
#include <ios>
#include <memory>

#include <gtest/gtest.h>

namespace kestrova::test {

/// The pattern's colour at a place: unique in fields of up to 64 by 64, and never that of a neighbour.
inline QRgb patternColor(int x, int y) { return qRgb(x * 4 % 256, y * 4 % 256, (x * 37 + y * 91) % 256); }

/// A pattern without any symmetry; y counts from the bottom.
inline QImage patternBitmap(int width, int height) {
  QImage bitmap(width, height, QImage::Format_RGB32);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) bitmap.setPixel(x, height - 1 - y, patternColor(x, y));
  }
  return bitmap;
}

/// A picture of the size of its bitmap.
inline ImagePtr imageOf(const QImage& bitmap) {
  auto image = std::make_shared<Image>(bitmap.size());
  image->addRepresentation(bitmap);
  return image;
}

/// The bitmap of an image that has to have one representation.
inline const QImage& onlyBitmap(const ImagePtr& image) {
  EXPECT_EQ(image->representations().size(), 1U);
  return image->representations().at(0);
}

/// The colour at a place of a bitmap; y counts from the bottom.
inline QRgb colorAt(const QImage& bitmap, int x, int y) {
  return bitmap.pixelColor(x, bitmap.height() - 1 - y).rgba();
}
inline QRgb colorAt(const ImagePtr& image, int x, int y) {
  return colorAt(image->bestRepresentation(), x, y);
}

/// Whether all colours of the bitmap are those that `expected(x, y)` says; y counts from the bottom.
template <typename Expected>
testing::AssertionResult showsEverywhere(const QImage& bitmap, Expected expected) {
  for (int y = 0; y < bitmap.height(); ++y) {
    for (int x = 0; x < bitmap.width(); ++x) {
      if (colorAt(bitmap, x, y) == expected(x, y)) continue;
      return testing::AssertionFailure() << std::hex << colorAt(bitmap, x, y) << " instead of "
                                         << expected(x, y) << std::dec << " at " << x << ", " << y;
    }
  }
  return testing::AssertionSuccess() << "all " << bitmap.width() << " by " << bitmap.height();
}

// How much a sample may differ.
inline constexpr int notAtAll = 0;
inline constexpr int byRounding = 1;
inline constexpr int byTheBestJpeg = 4;

inline bool isNear(QRgb a, QRgb b, int tolerance) {
  return std::abs(qRed(a) - qRed(b)) <= tolerance && std::abs(qGreen(a) - qGreen(b)) <= tolerance &&
         std::abs(qBlue(a) - qBlue(b)) <= tolerance && qAlpha(a) == qAlpha(b);
}

/// Whether both bitmaps show the same, give or take the tolerance in each sample.
inline testing::AssertionResult looksLike(const QImage& bitmap, const QImage& expected, int tolerance) {
  if (bitmap.size() != expected.size()) {
    return testing::AssertionFailure() << bitmap.width() << " by " << bitmap.height() << " instead of "
                                       << expected.width() << " by " << expected.height();
  }
  for (int y = 0; y < bitmap.height(); ++y) {
    for (int x = 0; x < bitmap.width(); ++x) {
      if (isNear(bitmap.pixelColor(x, y).rgba(), expected.pixelColor(x, y).rgba(), tolerance)) continue;
      return testing::AssertionFailure()
             << std::hex << bitmap.pixelColor(x, y).rgba() << " instead of "
             << expected.pixelColor(x, y).rgba() << std::dec << " at " << x << ", " << y;
    }
  }
  return testing::AssertionSuccess();
}

}  // namespace kestrova::test
