#pragma once

#include "imaging/base/image_size.h"
#include "imaging/base/rewrite_plan.h"
#include "imaging/photo_formats.h"
#include "platform/bytes.h"

#include <string>

#include <tl/expected.hpp>

namespace kestrova::imaging {

struct RewriteError {
  std::string reason;          ///< one line, in English
  bool isInterrupted = false;  ///< the work was given up as asked; this says nothing about the photo
};

/// A photo whose headers were read.
struct MeasuredPhoto {
  const PhotoFormat* format = nullptr;  ///< by its content; of static duration
  ImageSize size;
};

/// An error when the file is not a photo of a known format, or has more pixels than image_limits.h allows.
tl::expected<MeasuredPhoto, RewriteError> measurePhoto(ByteView file);

/// Encodes a measured photo again, in its own format, with everything except the requested pixels carried
/// over. An error if the photo does not decode completely and without a warning. Memory stays within the
/// bounds of image_limits.h. As soon as `stopped` returns true the work is given up, which is an error as
/// well. Pure and callable from any thread; it starts no threads and does not throw.
tl::expected<RewrittenPhoto, RewriteError> rewritePhoto(ByteView file, const MeasuredPhoto& photo,
                                                        const RewriteRequest& request,
                                                        const Stopped& stopped = {});

}  // namespace kestrova::imaging
