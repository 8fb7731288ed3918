#pragma once

#include "imaging/base/image_limits.h"

#include <cstdint>
#include <stdexcept>
#include <string>

namespace kestrova::imaging {

/// Why a photo cannot be decoded or encoded. Thrown by the codecs of src/imaging; `measurePhoto` and
/// `rewritePhoto` return it as a value.
class ImageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Throws unless this many bytes may be held at a time.
inline void requireMemory(std::uint64_t bytes) {
  if (bytes > std::uint64_t{maxWorkingBytes}) throw ImageError("the picture needs too much memory");
}

/// Throws unless the decoded pixels of `width` x `height` at `bytesPerPixel` stay within the limits.
inline void requireAffordable(std::int64_t width, std::int64_t height, std::int64_t bytesPerPixel = 1) {
  if (width <= 0 || height <= 0) throw ImageError("the picture has no pixels");
  if (width > maxPixels / height) throw ImageError("the picture has too many pixels");
  if (width > maxRowBytes / bytesPerPixel) throw ImageError("the picture needs too much memory");
  requireMemory(static_cast<std::uint64_t>(width * height * bytesPerPixel));
}

}  // namespace kestrova::imaging
