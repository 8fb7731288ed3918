#pragma once

#include "imaging/rewrite_plan.h"
#include "platform/bytes.h"

namespace kestrova::imaging {

/// The JPEG written anew. Pixels that keep their size are turned without loss where that is possible, and
/// keep their very bytes where they are not turned; others are scaled plane by plane in the colour space and
/// sampling of the source. Every application segment and comment passes through byte for byte, but for the
/// tags and previews that the new pixels prove wrong. Throws ImageError when the file does not decode without
/// a warning.
Bytes rewriteJpeg(ByteView file, const RewritePlan& plan);

}  // namespace kestrova::imaging
