#include "execution/frame_fit.h"

namespace kestrova {

namespace {

constexpr float widestByHeight = 16.0F / 9.0F;

double inSinglePrecision(double value) { return static_cast<double>(static_cast<float>(value)); }

}  // namespace

std::optional<PictureSize> frameOf(std::int64_t resolution) {
  if (resolution == 1) return PictureSize{1280, 720};
  if (resolution == 2) return PictureSize{1920, 1080};
  return std::nullopt;
}

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
