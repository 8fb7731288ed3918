#pragma once

#include "execution/frame_fit.h"
#include "imaging/photo_rewrite.h"
#include "model/options.h"
#include "platform/bytes.h"

namespace kestrova {

/// How to rewrite a photo.
struct RewriteWishes {
  Resolution resolution = Resolution::original;  ///< a resolution without a frame keeps the size
  bool upright = false;
  bool leavesOutSmall = false;
  bool operator==(const RewriteWishes&) const = default;
};

/// The result of rewriting a photo.
struct Rewriting {
  PictureSize size;        ///< of the source, as it is seen
  bool isLeftOut = false;  ///< the photo is small: it is not rewritten
  bool isResized = false;
  imaging::RewrittenPhoto photo = {};
};

/// Measures a photo, filters it, then rewrites it. A photo that does not decode completely is an error, with
/// its reason; also a small one, so that only photos that can be seen are left out. As soon as `stopped`
/// returns true the work is given up, which is an error that says so. Pure, callable from any thread.
tl::expected<Rewriting, imaging::RewriteError> rewritingOf(ByteView photo, const RewriteWishes& wishes,
                                                           const imaging::Stopped& stopped = {});

}  // namespace kestrova
