#pragma once

#include "imaging/base/image_size.h"
#include "imaging/base/rewrite_plan.h"
#include "platform/bytes.h"

#include <optional>
#include <string>

#include <tl/expected.hpp>

namespace kestrova::imaging {

enum class ImageType { jpeg, png, tiff };

struct RewriteError {
  std::string reason;  ///< one line, for the log
};

/// The type of a file by its content; nothing when it is none that can be read and written.
std::optional<ImageType> imageTypeOf(ByteView file);

tl::expected<ImageSize, RewriteError> imageSizeOf(ByteView file);

/// Writes a photo anew, in the type of its content, with everything but the named pixels carried over. A
/// photo that does not decode whole and without a warning is an error: nothing of it is written. Memory stays
/// within the bounds stated in image_limits.h. Pure and callable from any thread; it starts no threads.
tl::expected<Bytes, RewriteError> rewritePhoto(ByteView file, const RewriteRequest& request);

}  // namespace kestrova::imaging
