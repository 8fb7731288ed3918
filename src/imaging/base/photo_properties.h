#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kestrova::imaging {

/// What a photo says about itself.
struct PhotoProperties {
  std::optional<std::int64_t> orientation;  ///< TIFF 6.0 Orientation, 1 to 8 (1 = upright)
  std::optional<std::int64_t> pixelWidth;
  std::optional<std::int64_t> pixelHeight;
  /// Exif DateTimeDigitized (0x9004) as written, up to its first NUL byte and without trailing blanks; at
  /// most 32 bytes. Empty when the photo has none, or when the prefix ends within it. Nominally "yyyy:MM:dd
  /// HH:mm:ss", but not all cameras write that.
  std::string_view digitized() const { return {digitizedText.data(), digitizedLength}; }

  std::array<char, 32> digitizedText{};
  std::size_t digitizedLength = 0;
};

}  // namespace kestrova::imaging
