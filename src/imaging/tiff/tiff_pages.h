#pragma once

#include "imaging/base/image_size.h"
#include "platform/bytes.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrova::imaging {

/// One page of a TIFF file: a directory of its chain.
struct TiffPage {
  std::uint64_t directory = 0;  ///< where it is in the file
  PixelSize size;
  std::optional<std::int64_t> orientation;  ///< 1 to 8; absent where the page states none
  bool isReduced = false;                   ///< it says that it is a smaller version of another picture
  bool hasSubDirectories = false;           ///< these may hold pictures, as in cameras' raw files
};

/// The pages that state a size, in their order; at least one.
class TiffPages {
 public:
  /// Throws ImageError when there is no page, or more directories than any real file has.
  explicit TiffPages(ByteView file);

  const TiffPage& first() const { return pages_.front(); }
  /// The page with the most pixels, the first of equals.
  const TiffPage& largest() const;
  /// The largest width and the largest height, which may be those of two pages.
  PixelSize largestSides() const;
  /// A page that states no orientation has that of the first.
  std::int64_t orientationOf(const TiffPage& page) const;
  /// Whether every page is stored upright.
  bool areUpright() const;
  int count() const { return static_cast<int>(pages_.size()); }

 private:
  std::vector<TiffPage> pages_;
};

}  // namespace kestrova::imaging
