#pragma once

#include "imaging/base/raster.h"
#include "imaging/base/rewrite_plan.h"
#include "imaging/jpeg/jpeg_decoder.h"

#include <vector>

namespace kestrova::imaging {

/// A JPEG's components, scaled and turned, ready to be encoded.
struct JpegPlanes {
  JpegFormat format;
  PixelSize size;
  std::vector<Raster> planes;
};

/// Decodes, scales and turns the photo's planes by the plan. The decoder shrinks as long as the filter gets
/// at least twice the pixels of the result. The decoder must not have been started. Throws ImageError.
JpegPlanes decodePlanes(JpegDecoder& decoder, const RewritePlan& plan);

}  // namespace kestrova::imaging
