#pragma once

#include "imaging/exif/exif_patch.h"
#include "imaging/jpeg/jpeg_outline.h"
#include "platform/bytes.h"

namespace kestrova::imaging {

/// Puts a file together: the application segments and comments of `file`, edited, the picture of `pixels` (a
/// JPEG without such segments), and whatever follows the picture in `file`. When the photo was turned, the
/// pictures that a multi-picture index names are turned with it or left out with their index, which otherwise
/// always points to where they are. A picture that states an orientation of its own stays.
Bytes joinJpeg(ByteView file, const JpegOutline& outline, ByteView pixels, const MetadataEdit& edit);

/// Patches the Exif blocks of a whole file whose pixels stay where they are.
void patchJpeg(Bytes& file, const JpegOutline& outline, const ExifPatch& patch);

}  // namespace kestrova::imaging
