#pragma once

#include "platform/file_manager.h"

#include <cstdint>
#include <optional>

namespace kestrova {

/// What planning wants to know of a photo; each value is absent where the photo does not tell it.
struct ImageMetadata {
  std::optional<std::int64_t> orientation;  ///< 1 to 8, 1 = upright
  std::optional<std::int64_t> pixelHeight;
  std::optional<std::int64_t> pixelWidth;
  std::optional<Date> captureDate;  ///< the Exif digitising time
};

/// Reads the metadata from a photo's first bytes. The date is the digitising time, not that of taking: both
/// are equal for a camera's photo, and only the former dates a scanned one.
ImageMetadata imageMetadata(ByteView start);

}  // namespace kestrova
