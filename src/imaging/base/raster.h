#pragma once

#include "imaging/base/interruption.h"
#include "imaging/base/reorientation.h"
#include "platform/bytes.h"

#include <cstddef>
#include <cstdint>

namespace kestrova::imaging {

/// Rows of pixels of `pixelBytes` bytes each. Rows are padded to whole blocks of eight pixels, as JPEG codecs
/// need.
class Raster {
 public:
  Raster() = default;
  /// Throws ImageError if it would exceed the limits.
  Raster(std::int64_t width, std::int64_t height, int pixelBytes);

  std::int64_t width() const { return width_; }
  std::int64_t height() const { return height_; }
  int pixelBytes() const { return pixelBytes_; }
  std::size_t rowBytes() const {
    return static_cast<std::size_t>(width_) * static_cast<std::size_t>(pixelBytes_);
  }
  std::uint8_t* row(std::int64_t y) { return samples_.data() + static_cast<std::size_t>(y) * stride_; }
  const std::uint8_t* row(std::int64_t y) const {
    return samples_.data() + static_cast<std::size_t>(y) * stride_;
  }

 private:
  std::int64_t width_ = 0;
  std::int64_t height_ = 0;
  int pixelBytes_ = 1;
  std::size_t stride_ = 0;
  Bytes samples_;
};

/// The raster reoriented; the same one when there is nothing to do. Throws ImageError, and Interrupted.
Raster reoriented(Raster raster, const Reorientation& reorientation, const Stopped& stopped);

}  // namespace kestrova::imaging
