#include "imaging/base/raster.h"

#include "imaging/base/image_error.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace kestrova::imaging {

namespace {

/// Edge of the squares that are copied one by one, so that both rasters stay in the cache.
constexpr std::int64_t tile = 32;

struct Steps {
  const std::uint8_t* origin;  ///< the stored pixel that becomes the first pixel of the result
  std::ptrdiff_t right;        ///< bytes from there to the pixel that becomes its neighbour on the right
  std::ptrdiff_t down;
};

Steps stepsThrough(const Raster& raster, const Reorientation& reorientation) {
  const std::ptrdiff_t alongX = reorientation.mirrorX ? -raster.pixelBytes() : raster.pixelBytes();
  const std::ptrdiff_t stride = raster.height() > 1 ? raster.row(1) - raster.row(0) : 0;
  const std::ptrdiff_t alongY = reorientation.mirrorY ? -stride : stride;
  const std::int64_t x = reorientation.mirrorX ? raster.width() - 1 : 0;
  const std::uint8_t* origin =
      raster.row(reorientation.mirrorY ? raster.height() - 1 : 0) + x * raster.pixelBytes();
  return reorientation.transpose ? Steps{origin, alongY, alongX} : Steps{origin, alongX, alongY};
}

/// `fixedBytes` 0 stands for pixels of any width.
template <int fixedBytes>
void reorientTile(const Steps& steps, Raster& result, std::int64_t left, std::int64_t top) {
  const auto pixelBytes = static_cast<std::size_t>(fixedBytes == 0 ? result.pixelBytes() : fixedBytes);
  const std::int64_t right = std::min(left + tile, result.width());
  const std::int64_t bottom = std::min(top + tile, result.height());
  for (std::int64_t y = top; y < bottom; ++y) {
    std::uint8_t* to = result.row(y) + static_cast<std::size_t>(left) * pixelBytes;
    const std::uint8_t* from = steps.origin + y * steps.down + left * steps.right;
    for (std::int64_t x = left; x < right; ++x, to += pixelBytes, from += steps.right) {
      std::memcpy(to, from, pixelBytes);
    }
  }
}

template <int fixedBytes>
void reorientAll(const Raster& raster, const Reorientation& reorientation, Raster& result,
                 const Stopped& stopped) {
  const Steps steps = stepsThrough(raster, reorientation);
  for (std::int64_t top = 0; top < result.height(); top += tile) {
    for (std::int64_t left = 0; left < result.width(); left += tile) {
      throwIfStopped(stopped);
      reorientTile<fixedBytes>(steps, result, left, top);
    }
  }
}

}  // namespace

Raster::Raster(std::int64_t width, std::int64_t height, int pixelBytes)
    : width_(width), height_(height), pixelBytes_(pixelBytes) {
  requireAffordable(width, height, pixelBytes);
  const auto padded = static_cast<std::size_t>((width + 7) / 8 * 8);
  stride_ = padded * static_cast<std::size_t>(pixelBytes);
  requireMemory(stride_ * static_cast<std::size_t>(height));
  samples_.resize(stride_ * static_cast<std::size_t>(height));
}

Raster reoriented(Raster raster, const Reorientation& reorientation, const Stopped& stopped) {
  if (reorientation.isNone()) return raster;
  const PixelSize size = reoriented(PixelSize{raster.width(), raster.height()}, reorientation);
  Raster result(size.width, size.height, raster.pixelBytes());
  switch (raster.pixelBytes()) {
    case 1:
      reorientAll<1>(raster, reorientation, result, stopped);
      break;
    case 2:
      reorientAll<2>(raster, reorientation, result, stopped);
      break;
    case 3:
      reorientAll<3>(raster, reorientation, result, stopped);
      break;
    case 4:
      reorientAll<4>(raster, reorientation, result, stopped);
      break;
    case 6:
      reorientAll<6>(raster, reorientation, result, stopped);
      break;
    case 8:
      reorientAll<8>(raster, reorientation, result, stopped);
      break;
    default:
      reorientAll<0>(raster, reorientation, result, stopped);
  }
  return result;
}

}  // namespace kestrova::imaging
