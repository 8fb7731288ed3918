#pragma once

#include "platform/file_manager.h"

#include <cstdint>
#include <optional>

namespace kestrova {

/// What planning needs to know about a photo; a value is absent if the photo does not state it.
struct ImageMetadata {
  std::optional<std::int64_t> orientation;  ///< 1 to 8, 1 = upright
  std::optional<std::int64_t> pixelHeight;
  std::optional<std::int64_t> pixelWidth;
  std::optional<Date> captureDate;  ///< the Exif digitising time
};

/// Reads the metadata from a photo's first bytes. The date is the digitising time, not the time the photo was
/// taken: cameras write the same for both, and scanners write only the former.
ImageMetadata imageMetadata(ByteView start);

}  // namespace kestrova
