#include "execution/frame_fit.h"

namespace kestrova {

namespace {

constexpr float widestByHeight = 16.0F / 9.0F;

double inSinglePrecision(double value) { return static_cast<double>(static_cast<float>(value)); }

}  // namespace

PictureSize fitIntoFrame(PictureSize picture, PictureSize frame) {
  const auto [width, height] = picture;
  if (static_cast<float>(width / height) > widestByHeight) {
    if (width <= frame.width) return picture;
    return {frame.width, inSinglePrecision(height * frame.width / width)};
  }
  if (height <= frame.height) return picture;
  return {inSinglePrecision(width * frame.height / height), frame.height};
}

}  // namespace kestrova
