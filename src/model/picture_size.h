#pragma once

namespace kestrova {

/// A picture's size in pixels, not necessarily whole ones.
struct PictureSize {
  double width = 0;
  double height = 0;
  bool operator==(const PictureSize&) const = default;
};

}  // namespace kestrova
