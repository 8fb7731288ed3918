#pragma once

#include <cstdint>

namespace kestrova::imaging {

struct PixelSize {
  std::int64_t width = 0;
  std::int64_t height = 0;
  bool operator==(const PixelSize&) const = default;
};

/// What a decoder would make of a photo, without decoding its pixels.
struct ImageSize {
  PixelSize stored;              ///< as stored in the file; of several pages, the largest sides
  PixelSize page;                ///< of the page that is written when its pixels change; else as `stored`
  std::int64_t orientation = 1;  ///< 1 to 8
  PixelSize upright() const { return orientation >= 5 ? PixelSize{stored.height, stored.width} : stored; }
};

}  // namespace kestrova::imaging
