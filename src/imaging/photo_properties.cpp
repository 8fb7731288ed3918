#include "imaging/photo_properties.h"

#include "imaging/photo_formats.h"

namespace kestrova::imaging {

std::optional<PhotoProperties> readPhotoProperties(ByteView prefix) noexcept {
  const PhotoFormat* format = formatOf(prefix);
  if (format == nullptr) return std::nullopt;
  return format->properties(prefix);
}

}  // namespace kestrova::imaging
