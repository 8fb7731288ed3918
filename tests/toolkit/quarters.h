#pragma once

#include "support/test_pattern.h"

#include <QColor>
#include <QImage>

// Pictures for the tests of HBPanel: four quarters of different colours show how a picture lies.

namespace kestrova::test {

inline constexpr QRgb white = qRgb(255, 255, 255);
inline constexpr QRgb transparent = 0;

/// Four quarters of different colours; y counts from the bottom.
inline QRgb quarterColor(int x, int y, int width, int height) {
  const bool right = x >= width / 2;
  const bool upper = y >= height / 2;
  return right ? (upper ? qRgb(255, 0, 0) : qRgb(0, 255, 0)) : (upper ? qRgb(0, 0, 255) : qRgb(255, 255, 0));
}

inline QImage quartersBitmap(int width, int height) {
  QImage bitmap(width, height, QImage::Format_RGB32);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) bitmap.setPixel(x, height - 1 - y, quarterColor(x, y, width, height));
  }
  return bitmap;
}

}  // namespace kestrova::test
