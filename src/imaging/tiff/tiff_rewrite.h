#pragma once

#include "imaging/base/rewrite_plan.h"
#include "platform/bytes.h"

namespace kestrova::imaging {

/// The TIFF written anew, with the bit depth, the compression and the metadata of the source. Pixels that
/// stay as they are keep their very bytes, as do further pages then; a result with other pixels has its first
/// page alone. Throws ImageError when the file does not decode whole, or is of a kind that is not written:
/// BigTIFF, floating point.
Bytes rewriteTiff(ByteView file, const RewritePlan& plan);

}  // namespace kestrova::imaging
