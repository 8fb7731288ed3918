#include "planning/image_metadata.h"

#include "app/organise_manager.h"
#include "imaging/photo_properties.h"
#include "planning/calendar.h"
#include "platform/file_url.h"

namespace kestrova {

ImageMetadata imageMetadata(const std::optional<Bytes>& prefix) {
  if (!prefix) return {};
  const auto properties = imaging::readPhotoProperties(*prefix);
  if (!properties) return {};
  return {properties->orientation, properties->pixelHeight, properties->pixelWidth,
          parseLocalTime(properties->digitized())};
}

std::optional<Date> OrganiseManager::getModifiedDate(std::string_view url) const {
  const auto path = pathOfFileUrl(url);
  if (!path) return std::nullopt;
  const auto attributes = host_.files->attributesOfItem(*path);
  if (!attributes) return std::nullopt;
  return attributes->modified;
}

}  // namespace kestrova
