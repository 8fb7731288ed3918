#include "imaging/tiff/tiff_rewrite.h"

#include "imaging/exif/exif_patch.h"
#include "imaging/jpeg/jpeg_rewrite.h"
#include "imaging/tiff/tiff_encoder.h"
#include "imaging/tiff/tiff_metadata.h"
#include "imaging/tiff/tiff_pixels.h"

namespace kestrova::imaging {

Bytes rewriteTiff(ByteView file, const RewritePlan& plan) {
  const MetadataEdit edit = metadataEdit(plan);
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
