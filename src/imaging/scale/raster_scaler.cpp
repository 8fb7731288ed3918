#include "imaging/scale/raster_scaler.h"

#include <algorithm>
#include <utility>

namespace kestrova::imaging {

RasterScaler::RasterScaler(const AxisMapping& x, const AxisMapping& y, const PixelLayout& layout,
                           Stopped stopped)
    : stopped_(std::move(stopped)), raster_(x.resultCount, y.resultCount, layout.pixelBytes()) {
  if (!x.isIdentity() || !y.isIdentity()) resampler_.emplace(x, y, layout, stopped_);
}

RasterScaler::RasterScaler(const RewritePlan& plan, const PixelLayout& layout)
    : RasterScaler(wholeAxis(static_cast<int>(plan.source.width), static_cast<int>(plan.scaled.width)),
                   wholeAxis(static_cast<int>(plan.source.height), static_cast<int>(plan.scaled.height)),
                   layout, plan.stopped) {}

void RasterScaler::push(const std::uint8_t* row) {
  if (!resampler_) {
    std::copy_n(row, raster_.rowBytes(), raster_.row(filled_++));
    return;
  }
  resampler_->push(row);
  while (filled_ < raster_.height() && resampler_->pull(raster_.row(filled_))) {
    throwIfStopped(stopped_);
    ++filled_;
  }
}

}  // namespace kestrova::imaging
