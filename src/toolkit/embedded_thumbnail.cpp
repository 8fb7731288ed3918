#include "toolkit/embedded_thumbnail.h"

#include "imaging/exif/exif_patch.h"
#include "toolkit/jpeg_segments.h"

namespace kestrova {

Bytes embeddedThumbnail(ByteView jpegFile) {
  const ByteView segment = exifBlock(jpegFile);
  Bytes exif(segment.begin(), segment.end());
  const auto thumbnail = imaging::exifPreview(exif);
  return {thumbnail.begin(), thumbnail.end()};
}

}  // namespace kestrova
