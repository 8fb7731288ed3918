#pragma once

#include "platform/bytes.h"

#include <cstdint>
#include <optional>
#include <string>

#include <tl/expected.hpp>

namespace kestrova::imaging {

enum class ImageType { jpeg, png, tiff };

struct PixelSize {
  std::int64_t width = 0;
  std::int64_t height = 0;
  bool operator==(const PixelSize&) const = default;
};

/// What is to become of a photo.
struct RewriteRequest {
  /// The wanted pixel size of the written photo as it is *stored* when `upright` is off, and as it is *seen*
  /// when it is on; absent keeps the size.
  std::optional<PixelSize> size;
  /// Turn the pixels upright by the stored orientation and set the orientation to 1. Otherwise the pixels
  /// stay as they are stored, and so does the tag.
  bool upright = false;
};

struct RewriteError {
  std::string reason;  ///< one line, for the log
};

/// The type of a file by its content; nothing when it is none that can be read and written.
std::optional<ImageType> imageTypeOf(ByteView file);

/// What a decoder would make of the photo, without decoding its pixels.
struct ImageSize {
  PixelSize stored;              ///< as the pixels lie in the file
  std::int64_t orientation = 1;  ///< 1 to 8
  PixelSize upright() const { return orientation >= 5 ? PixelSize{stored.height, stored.width} : stored; }
};
tl::expected<ImageSize, RewriteError> imageSizeOf(ByteView file);

/// Writes a photo anew, in the type of its content, with everything but the named pixels carried over. A
/// photo that does not decode whole and without a warning is an error: nothing of it is written. Memory stays
/// within the bounds stated in image_limits.h. Pure and callable from any thread; it starts no threads.
tl::expected<Bytes, RewriteError> rewritePhoto(ByteView file, const RewriteRequest& request);

}  // namespace kestrova::imaging
