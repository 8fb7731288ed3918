#pragma once

#include "imaging/base/raster.h"
#include "imaging/base/rewrite_plan.h"
#include "imaging/scale/resampler.h"

#include <cstdint>
#include <optional>

namespace kestrova::imaging {

/// Collects rows, from the top, into a raster of the result's size. Rows that need no scaling are copied.
class RasterScaler {
 public:
  /// Throws ImageError if it would exceed the limits, and Interrupted.
  RasterScaler(const AxisMapping& x, const AxisMapping& y, const PixelLayout& layout, Stopped stopped = {});
  /// Scales the whole picture of a plan.
  RasterScaler(const RewritePlan& plan, const PixelLayout& layout);

  /// Throws Interrupted.
  void push(const std::uint8_t* row);
  /// The raster, once all source rows were pushed.
  Raster take() { return std::move(raster_); }

 private:
  Stopped stopped_;
  std::optional<Resampler> resampler_;
  Raster raster_;
  std::int64_t filled_ = 0;
};

}  // namespace kestrova::imaging
