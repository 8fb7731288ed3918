#pragma once

#include "imaging/base/rewrite_plan.h"
#include "imaging/jpeg/jpeg_decoder.h"

namespace kestrova::imaging {

/// Whether turning the coefficients gives exactly the picture turned, within the memory limit. Partial edge
/// blocks must not end up left or top.
bool reorientsLosslessly(JpegDecoder& decoder, const Reorientation& reorientation);

/// The picture turned without decoding its pixels, with Huffman tables of its own and no application
/// segments. The decoder must not have been started. Throws ImageError, and Interrupted.
Bytes reorientCoefficients(JpegDecoder& decoder, const RewritePlan& plan);

}  // namespace kestrova::imaging
