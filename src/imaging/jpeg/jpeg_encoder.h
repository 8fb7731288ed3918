#pragma once

#include "imaging/base/raster.h"
#include "imaging/jpeg/jpeg_library.h"

#include <vector>

namespace kestrova::imaging {

/// How many samples a component has along an axis of the whole photo.
std::int64_t planeExtent(std::int64_t pixels, int samplingFactor, int maxSamplingFactor);

/// A JPEG's components, ready to be encoded.
struct JpegPlanes {
  JpegFormat format;
  PixelSize size;
  std::vector<Raster> planes;  ///< one byte a sample; one for each component, of its `planeExtent`
};

/// Encodes a picture. The stream holds no application segments: JFIF and Adobe markers are for the caller to
/// add. Quality as libjpeg counts it, 1 to 100. The samples after the end of each row are filled in. Throws
/// ImageError, and Interrupted.
Bytes encodeJpeg(JpegPlanes& picture, int quality, const Stopped& stopped = {});

}  // namespace kestrova::imaging
