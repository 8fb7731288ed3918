#pragma once

#include "imaging/base/image_error.h"
#include "imaging/base/image_size.h"
#include "imaging/base/interruption.h"
#include "imaging/base/reorientation.h"
#include "platform/bytes.h"

#include <cstdint>
#include <optional>

namespace kestrova::imaging {

/// What to do with a photo.
struct RewriteRequest {
  /// The wanted pixel size of the written photo as it is *stored* when `upright` is off, and as it is *seen*
  /// when it is on; absent keeps the size.
  std::optional<PixelSize> size;
  /// Turn the pixels upright by the stored orientation and set the orientation to 1. Otherwise the pixels
  /// stay as they are stored, and so does the tag.
  bool upright = false;
};

/// A request, worked out for one photo. Scaling comes before turning, on the axes as they are stored.
struct RewritePlan {
  PixelSize source;  ///< as stored
  PixelSize scaled;  ///< of the result, before it is turned
  Reorientation reorientation = {};
  bool resetOrientation = false;
  Stopped stopped = {};  ///< asked in every step

  PixelSize result() const { return reoriented(scaled, reorientation); }
  bool scales() const { return scaled != source; }
  bool keepsPixels() const { return !scales() && reorientation.isNone(); }
};

/// Throws ImageError unless the result's pixels stay within the limits; while they are turned, there are two
/// copies.
inline void requireAffordable(const RewritePlan& plan, std::int64_t bytesPerPixel) {
  requireAffordable(plan.scaled.width, plan.scaled.height,
                    plan.reorientation.isNone() ? bytesPerPixel : 2 * bytesPerPixel);
}

inline RewritePlan planRewrite(const ImageSize& photo, const RewriteRequest& request) {
  const Reorientation reorientation =
      request.upright ? reorientationFrom(photo.orientation) : Reorientation{};
  const PixelSize scaled = request.size ? reoriented(*request.size, reorientation) : photo.page;
  return {.source = photo.page,
          .scaled = scaled,
          .reorientation = reorientation,
          .resetOrientation = request.upright};
}

/// The result of rewriting a photo.
struct RewrittenPhoto {
  Bytes bytes;           ///< the file
  int pagesLeftOut = 0;  ///< of a TIFF whose pixels changed: all but one
};

}  // namespace kestrova::imaging
