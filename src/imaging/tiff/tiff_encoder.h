#pragma once

#include "imaging/tiff/tiff_pixels.h"

namespace kestrova::imaging {

/// Encodes a picture in strips, in the compression of its format if that can be written, with the resolution
/// and colour tags of a page of `source`. Throws ImageError, and Interrupted.
Bytes encodeTiff(const TiffPicture& picture, ByteView source, std::uint64_t directory,
                 const Stopped& stopped);

}  // namespace kestrova::imaging
