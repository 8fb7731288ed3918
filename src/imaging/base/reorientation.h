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
      return {true, false, false};
    case 3:
      return {true, true, false};
    case 4:
      return {false, true, false};
    case 5:
      return {false, false, true};
    case 6:
      return {false, true, true};
    case 7:
      return {true, true, true};
    case 8:
      return {true, false, true};
    default:
      return {};
  }
}

inline PixelSize reoriented(const PixelSize& size, const Reorientation& reorientation) {
  return reorientation.transpose ? PixelSize{size.height, size.width} : size;
}

}  // namespace kestrova::imaging
