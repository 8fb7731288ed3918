#pragma once

#include "imaging/base/image_size.h"

#include <cstdint>

namespace kestrova::imaging {

/// How stored pixels become upright ones: mirrored along the stored axes first, then the axes exchanged.
struct Reorientation {
  bool mirrorX = false;
  bool mirrorY = false;
  bool transpose = false;

  bool isNone() const { return !mirrorX && !mirrorY && !transpose; }
  bool operator==(const Reorientation&) const = default;
};

/// What turns pixels of this TIFF 6.0 Orientation upright; nothing unless it is 2 to 8.
constexpr Reorientation reorientationFrom(std::int64_t orientation) {
  switch (orientation) {
    case 2:
      return {.mirrorX = true};
    case 3:
      return {.mirrorX = true, .mirrorY = true};
    case 4:
      return {.mirrorY = true};
    case 5:
      return {.transpose = true};
    case 6:
      return {.mirrorY = true, .transpose = true};
    case 7:
      return {.mirrorX = true, .mirrorY = true, .transpose = true};
    case 8:
      return {.mirrorX = true, .transpose = true};
    default:
      return {};
  }
}

inline PixelSize reoriented(const PixelSize& size, const Reorientation& reorientation) {
  return reorientation.transpose ? PixelSize{size.height, size.width} : size;
}

}  // namespace kestrova::imaging
