#include "imaging/photo_preview.h"

#include "imaging/exif/exif_patch.h"
#include "imaging/photo_formats.h"

namespace kestrova::imaging {

ByteView embeddedPreview(ByteView photo) {
  const PhotoFormat* format = formatOf(photo);
  return format == nullptr ? ByteView() : exifPreview(format->exifBlock(photo));
}

}  // namespace kestrova::imaging
