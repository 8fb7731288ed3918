#pragma once

#include "imaging/base/raster.h"
#include "imaging/scale/resampler.h"

#include <cstdint>
#include <optional>

namespace kestrova::imaging {

/// Collects rows, from the top, into a raster of the result's size. Rows that need no scaling are copied.
class RasterScaler {
 public:
  /// Throws ImageError if it would exceed the limits.
  RasterScaler(const AxisMapping& x, const AxisMapping& y, const PixelLayout& layout);
  /// Scales the whole picture.
  RasterScaler(const PixelSize& source, const PixelSize& result, const PixelLayout& layout);

  void push(const std::uint8_t* row);
  /// The raster, once all source rows were pushed.
  Raster take() { return std::move(raster_); }

 private:
  std::optional<Resampler> resampler_;
  Raster raster_;
  std::int64_t filled_ = 0;
};

}  // namespace kestrova::imaging
