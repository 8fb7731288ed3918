#pragma once

#include "imaging/base/rewrite_plan.h"
#include "imaging/exif/exif_patch.h"
#include "platform/bytes.h"

namespace kestrova::imaging {

/// The largest sides of all pages, and the size and orientation of the largest page. Throws ImageError.
ImageSize measureTiff(ByteView file);

/// The TIFF rewritten, with the bit depth, the compression and the metadata of the source. Pixels that stay
/// as they are keep their very bytes, and all pages stay then; a result with other pixels has the largest
/// page alone. Throws ImageError when that page does not decode whole, or is of a kind that is not written:
/// BigTIFF, floating point, a raw file's thumbnail.
RewrittenPhoto rewriteTiff(ByteView file, const RewritePlan& plan, const MetadataEdit& edit);

}  // namespace kestrova::imaging
