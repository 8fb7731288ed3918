#pragma once

#include "imaging/base/raster.h"
#include "imaging/jpeg/jpeg_library.h"

#include <span>

namespace kestrova::imaging {

/// How many samples a component has along an axis of the whole photo.
std::int64_t planeExtent(std::int64_t pixels, int samplingFactor, int maxSamplingFactor);

/// Encodes planes of one byte a sample, one for each component of the format and of its `planeExtent`. The
/// stream holds no application segments: JFIF and Adobe markers are for the caller to add. Quality as libjpeg
/// counts it, 1 to 100. The samples after the end of each row are filled in. Throws ImageError.
Bytes encodeJpeg(const JpegFormat& format, const PixelSize& size, std::span<Raster> planes, int quality);

}  // namespace kestrova::imaging
