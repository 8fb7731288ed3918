#pragma once

#include "imaging/base/rewrite_plan.h"
#include "imaging/exif/exif_patch.h"
#include "platform/bytes.h"

namespace kestrova::imaging {

/// The pixel size in a PNG's header; 0 if there is none.
PixelSize pngSize(ByteView file);

/// The PNG rewritten, with the bit depth and the channels of the source; scaled pictures of less than 8
/// bits become 8 bits, palettes become colours, transparent colours become opacity. Chunks that are not about
/// pixels pass through byte for byte, except for what `edit` changes. Throws ImageError when the
/// file does not decode without a warning, or when it is an animation whose pixels would change.
Bytes rewritePng(ByteView file, const RewritePlan& plan, const MetadataEdit& edit);

}  // namespace kestrova::imaging
