#include "imaging/scale/raster_scaler.h"

#include <algorithm>

namespace kestrova::imaging {

RasterScaler::RasterScaler(const AxisMapping& x, const AxisMapping& y, const PixelLayout& layout)
    : raster_(x.resultCount, y.resultCount, layout.pixelBytes()) {
  if (!x.isIdentity() || !y.isIdentity()) resampler_.emplace(x, y, layout);
}

RasterScaler::RasterScaler(const PixelSize& source, const PixelSize& result, const PixelLayout& layout)
    : RasterScaler(wholeAxis(static_cast<int>(source.width), static_cast<int>(result.width)),
                   wholeAxis(static_cast<int>(source.height), static_cast<int>(result.height)), layout) {}

void RasterScaler::push(const std::uint8_t* row) {
  if (!resampler_) {
    std::copy_n(row, raster_.rowBytes(), raster_.row(filled_++));
    return;
  }
  resampler_->push(row);
  while (filled_ < raster_.height() && resampler_->pull(raster_.row(filled_))) ++filled_;
}

}  // namespace kestrova::imaging
