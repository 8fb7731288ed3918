#pragma once

#include "imaging/base/rewrite_plan.h"
#include "imaging/jpeg/jpeg_decoder.h"
#include "imaging/jpeg/jpeg_encoder.h"

namespace kestrova::imaging {

/// Decodes, scales and turns the photo's planes by the plan. The decoder shrinks as long as the filter gets
/// at least twice the pixels of the result. The decoder must not have been started. Throws ImageError, and
/// Interrupted.
JpegPlanes decodePlanes(JpegDecoder& decoder, const RewritePlan& plan);

}  // namespace kestrova::imaging
