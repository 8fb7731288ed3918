#pragma once

#include "imaging/tiff/tiff_pixels.h"

namespace kestrova::imaging {

/// Encodes a picture in strips, in the compression of its format if that can be written, with what the first
/// directory of `source` says of resolution and colours. Throws ImageError.
Bytes encodeTiff(const TiffPicture& picture, ByteView source);

}  // namespace kestrova::imaging
