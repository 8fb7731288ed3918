#pragma once

#include "imaging/base/photo_properties.h"
#include "platform/bytes.h"

#include <optional>

namespace kestrova::imaging {

/// Reads orientation, pixel size and digitising time from the first bytes of a JPEG, TIFF (BigTIFF included)
/// or PNG file. The prefix may end anywhere and hold anything: what can be read from it is read, and nothing
/// more. Of several Exif blocks the first counts, of several entries of one kind the first valid one; an
/// orientation other than 1 to 8 and a size of 0 count as absent. The pixel size is that of the frame header
/// (JPEG SOFn, TIFF ImageWidth and ImageLength, PNG IHDR); where a JPEG's lies beyond the prefix, Exif
/// PixelXDimension and PixelYDimension (0xA002, 0xA003) serve. Returns nothing if the bytes are in none of
/// the three formats. It does not allocate or throw, and takes well under a microsecond.
std::optional<PhotoProperties> readPhotoProperties(ByteView prefix) noexcept;

}  // namespace kestrova::imaging
