#include "planning/image_metadata.h"

#include "imaging/photo_properties.h"
#include "planning/calendar.h"

namespace kestrova {

ImageMetadata imageMetadata(ByteView start) {
  const auto properties = imaging::readPhotoProperties(start);
  if (!properties) return {};
  return {properties->orientation, properties->pixelHeight, properties->pixelWidth,
          parseLocalTime(properties->digitized())};
}

}  // namespace kestrova
