#include "planning/image_metadata.h"

#include "imaging/photo_properties.h"
#include "planning/calendar.h"

namespace kestrova {

ImageMetadata imageMetadata(const std::optional<Bytes>& prefix) {
  if (!prefix) return {};
  const auto properties = imaging::readPhotoProperties(*prefix);
  if (!properties) return {};
  return {properties->orientation, properties->pixelHeight, properties->pixelWidth,
          parseLocalTime(properties->digitized())};
}

}  // namespace kestrova
