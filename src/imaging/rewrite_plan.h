#pragma once

#include "imaging/photo_rewrite.h"
#include "imaging/turn.h"

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

inline RewritePlan planRewrite(const ImageSize& photo, const RewriteRequest& request) {
  const Turn turn = request.upright ? turnOf(photo.orientation) : Turn{};
  const PixelSize scaled = request.size ? turned(*request.size, turn) : photo.stored;
  return {photo.stored, scaled, turn, request.upright};
}

}  // namespace kestrova::imaging
