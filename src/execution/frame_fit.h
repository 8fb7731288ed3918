#pragma once

#include <cstdint>
#include <optional>

namespace kestrova {

/// A picture's size in pixels, not necessarily whole ones.
struct PictureSize {
  double width = 0;
  double height = 0;
  bool operator==(const PictureSize&) const = default;
};

/// The frame of a resolution: 1 is 720P (1280 x 720), 2 is 1080P (1920 x 1080); nothing for any other.
std::optional<PictureSize> frameOf(std::int64_t resolution);

/// The size in which a picture fits into a frame; a picture is never enlarged. The aspect alone, as a
/// single-precision number, decides which side of the frame limits: the width above 16/9, the height at 16/9
/// and below, so that upright pictures are limited by the height too. The side that follows from it is
/// rounded to single precision.
PictureSize fitIntoFrame(PictureSize picture, PictureSize frame);

}  // namespace kestrova
