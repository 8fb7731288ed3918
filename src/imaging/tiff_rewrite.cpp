#include "imaging/tiff_rewrite.h"

#include "imaging/exif_patch.h"
#include "imaging/jpeg_rewrite.h"
#include "imaging/tiff_encoder.h"
#include "imaging/tiff_metadata.h"
#include "imaging/tiff_pixels.h"

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
