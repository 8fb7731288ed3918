#pragma once

#include "imaging/base/rewrite_plan.h"
#include "platform/bytes.h"

namespace kestrova::imaging {

/// The pixel size that a PNG's header states. Throws ImageError when it is none.
PixelSize pngSize(ByteView file);

/// The PNG written anew, with the bit depth and the channels of the source; scaled pictures of less than 8
/// bits become 8 bits, palettes become colours, transparent colours become opacity. Chunks that are not about
/// pixels pass through byte for byte, but for Orientation and pixel size in eXIf. Throws ImageError when the
/// file does not decode without a warning, or is an animation whose pixels would have to change.
Bytes rewritePng(ByteView file, const RewritePlan& plan);

}  // namespace kestrova::imaging
