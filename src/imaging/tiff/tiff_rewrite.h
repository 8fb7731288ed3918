#pragma once

#include "imaging/base/rewrite_plan.h"
#include "imaging/exif/exif_patch.h"
#include "platform/bytes.h"

namespace kestrova::imaging {

/// The pixel size that the first page states; 0 where it states none.
PixelSize tiffSize(ByteView file);

/// The TIFF rewritten, with the bit depth, the compression and the metadata of the source. Pixels that
/// stay as they are keep their very bytes, as do further pages then; a result with other pixels has its first
/// page alone. Throws ImageError when the file does not decode whole, or is of a kind that is not written:
/// BigTIFF, floating point.
Bytes rewriteTiff(ByteView file, const RewritePlan& plan, const MetadataEdit& edit);

}  // namespace kestrova::imaging
