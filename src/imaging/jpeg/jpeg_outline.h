#pragma once

#include "imaging/jpeg/jpeg_segments.h"
#include "platform/bytes.h"

#include <cstddef>
#include <vector>

namespace kestrova::imaging {

/// Where things lie in a JPEG file, by its markers alone.
struct JpegOutline {
  std::vector<JpegSegment> metadata;  ///< application segments and comments, in their order
  std::size_t imageEnd = 0;           ///< just after the end-of-image marker: what follows is not the image
};

/// The outline of a JPEG file that is there as a whole. Throws ImageError when it is not, or has more scans
/// than image_limits.h allows. The file may hold anything.
JpegOutline outlineJpeg(ByteView file);

}  // namespace kestrova::imaging
