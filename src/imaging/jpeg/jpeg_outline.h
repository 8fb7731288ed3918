#pragma once

#include "imaging/jpeg/jpeg_segments.h"
#include "platform/bytes.h"

#include <cstddef>
#include <vector>

namespace kestrova::imaging {

/// Where things are in a JPEG file, according to its markers alone.
struct JpegOutline {
  std::vector<JpegSegment> metadata;  ///< application segments and comments, in their order
  std::size_t imageEnd = 0;           ///< just after the end-of-image marker: what follows is not the image
};

/// The outline of a complete JPEG file. Throws ImageError if the file is incomplete or has more scans than
/// image_limits.h allows. It may contain anything.
JpegOutline outlineJpeg(ByteView file);

}  // namespace kestrova::imaging
