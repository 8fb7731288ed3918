#pragma once

#include "imaging/exif_patch.h"
#include "imaging/jpeg_outline.h"
#include "platform/bytes.h"

namespace kestrova::imaging {

/// How a JPEG's metadata follow its new pixels.
struct JpegMetadataEdit {
  ExifPatch exif;
  PreviewMaker turnPreview;  ///< set when the pixels were turned: makes any embedded JPEG over
};

/// Puts a file together: the application segments and comments of `file`, edited, the picture of `pixels` (a
/// JPEG without such segments), and whatever follows the picture in `file`. Pictures that a multi-picture
/// index names are turned with the photo or left out with their index, which always points to where they are.
Bytes joinJpeg(ByteView file, const JpegOutline& outline, ByteView pixels, const JpegMetadataEdit& edit);

/// Patches the Exif blocks of a whole file whose pixels stay where they are.
void patchJpeg(Bytes& file, const JpegOutline& outline, const ExifPatch& patch);

}  // namespace kestrova::imaging
