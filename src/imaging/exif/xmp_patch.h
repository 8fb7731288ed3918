#pragma once

#include "imaging/exif/exif_patch.h"
#include "platform/bytes.h"

namespace kestrova::imaging {

/// Updates an XMP packet to the new pixels: tiff:ImageWidth and tiff:ImageLength, exif:PixelXDimension and
/// exif:PixelYDimension, and, once the pixels were turned, tiff:Orientation. Properties that are not there
/// are not added; all other bytes stay. The packet may hold anything.
void editXmp(Bytes& packet, const MetadataEdit& edit);

}  // namespace kestrova::imaging
