#pragma once

#include "imaging/base/rewrite_plan.h"
#include "imaging/exif/exif_patch.h"
#include "platform/bytes.h"

namespace kestrova::imaging {

/// The largest sides of all pages, and the size and orientation of the largest page. Throws ImageError.
ImageSize measureTiff(ByteView file);

/// The TIFF rewritten, with the bit depth, the compression and the metadata of the source. Where no pixel
/// changes, all bytes of all pages stay; a result with other pixels has only the largest page. Throws
/// ImageError if that page does not decode completely, or is of an unsupported kind: BigTIFF, floating point,
/// a raw file's thumbnail.
RewrittenPhoto rewriteTiff(ByteView file, const RewritePlan& plan, const MetadataEdit& edit);

}  // namespace kestrova::imaging
