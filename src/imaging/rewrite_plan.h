#pragma once

#include "imaging/image_error.h"
#include "imaging/photo_rewrite.h"
#include "imaging/turn.h"

#include <cstdint>

namespace kestrova::imaging {

/// What a request comes to for one photo. Scaling comes before turning, on the axes as they are stored.
struct RewritePlan {
  PixelSize source;  ///< as stored
  PixelSize scaled;  ///< of the result, before it is turned
  Turn turn;
  bool resetOrientation = false;

  PixelSize result() const { return turned(scaled, turn); }
  bool scales() const { return scaled != source; }
  bool keepsPixels() const { return !scales() && turn.isNone(); }
};

/// Throws ImageError unless the result's pixels stay within the limits; while they are turned, they are there
/// twice.
inline void requireAffordable(const RewritePlan& plan, std::int64_t bytesPerPixel) {
  requireAffordable(plan.scaled.width, plan.scaled.height,
                    plan.turn.isNone() ? bytesPerPixel : 2 * bytesPerPixel);
}

inline RewritePlan planRewrite(const ImageSize& photo, const RewriteRequest& request) {
  const Turn turn = request.upright ? turnOf(photo.orientation) : Turn{};
  const PixelSize scaled = request.size ? turned(*request.size, turn) : photo.stored;
  return {photo.stored, scaled, turn, request.upright};
}

}  // namespace kestrova::imaging
