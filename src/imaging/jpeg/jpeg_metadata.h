#pragma once

#include "imaging/exif/exif_patch.h"
#include "imaging/jpeg/jpeg_outline.h"
#include "platform/bytes.h"

namespace kestrova::imaging {

/// Puts a file together: the application segments and comments of `file`, edited, the picture of `pixels` (a
/// JPEG without such segments), and what follows the picture in `file`, by JpegTrailer.
Bytes joinJpeg(ByteView file, const JpegOutline& outline, ByteView pixels, const MetadataEdit& edit);

/// Patches the Exif blocks of a whole file whose pixels stay where they are.
void patchJpeg(Bytes& file, const JpegOutline& outline, const ExifPatch& patch);

}  // namespace kestrova::imaging
