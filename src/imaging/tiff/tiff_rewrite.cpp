#include "imaging/tiff/tiff_rewrite.h"

#include "imaging/exif/exif_patch.h"
#include "imaging/tiff/tiff_encoder.h"
#include "imaging/tiff/tiff_metadata.h"
#include "imaging/tiff/tiff_pixels.h"
#include "imaging/tiff/tiff_properties.h"

namespace kestrova::imaging {

PixelSize tiffSize(ByteView file) {
  const PhotoProperties properties = readTiffProperties(file);
  return {properties.pixelWidth.value_or(0), properties.pixelHeight.value_or(0)};
}

Bytes rewriteTiff(ByteView file, const RewritePlan& plan, const MetadataEdit& edit) {
  if (plan.keepsPixels()) {
    verifyTiff(file);
    Bytes result(file.begin(), file.end());
    patchExif(result, edit.exif);
    return result;
  }
  const Bytes pixels = encodeTiff(decodeTiff(file, plan), file);
  return withMetadata(pixels, file, edit);
}

}  // namespace kestrova::imaging
