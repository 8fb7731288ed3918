#pragma once

#include "execution/frame_fit.h"
#include "imaging/photo_rewrite.h"
#include "model/options.h"
#include "platform/bytes.h"

namespace kestrova {

/// What is wanted of a photo.
struct RewriteWishes {
  Resolution resolution = Resolution::original;  ///< one without a frame keeps the size
  bool upright = false;
  bool leavesOutSmall = false;
};

/// What a photo becomes.
struct Rewriting {
  PictureSize size;        ///< of the source, as it is seen
  bool isLeftOut = false;  ///< it is small: there is no new photo
  bool isResized = false;
  imaging::RewrittenPhoto photo = {};
};

/// Measures a photo, filters it, then rewrites it. An error, with its reason, is whatever does not decode
/// whole; a small photo too, so that nothing is left out that nobody can see. Pure, callable from any thread.
tl::expected<Rewriting, imaging::RewriteError> rewritingOf(ByteView photo, const RewriteWishes& wishes);

}  // namespace kestrova
