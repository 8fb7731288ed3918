#pragma once

#include "platform/bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kestrova::imaging {

/// What a photo says of itself.
struct PhotoProperties {
  std::optional<std::int64_t> orientation;  ///< TIFF 6.0 Orientation, 1 to 8 (1 = upright)
  std::optional<std::int64_t> pixelWidth;
  std::optional<std::int64_t> pixelHeight;
  /// Exif DateTimeDigitized (0x9004) as it stands, without what follows a NUL byte and without blanks at its
  /// end; of a longer text the first 32 bytes. Empty when the photo has none, or when the prefix ends within
  /// it. Nominally "yyyy:MM:dd HH:mm:ss", but cameras write what they like.
  std::string_view digitized() const { return {digitizedText.data(), digitizedLength}; }

  std::array<char, 32> digitizedText{};
  std::size_t digitizedLength = 0;
};

/// Reads orientation, pixel size and digitising time from the first bytes of a JPEG, TIFF (BigTIFF included)
/// or PNG file. The prefix may end anywhere and hold anything: whatever can be read from it is read, and
/// nothing more. Of several Exif blocks the first counts, of several entries of one kind the first that makes
/// sense; an orientation other than 1 to 8 and a size of 0 make none. The pixel size is that of the frame
/// header (JPEG SOFn, TIFF ImageWidth and ImageLength, PNG IHDR); where a JPEG's lies beyond the prefix, Exif
/// PixelXDimension and PixelYDimension (0xA002, 0xA003) serve. Returns nothing when the bytes are none of the
/// three formats. Allocates nothing, throws nothing, takes well under a microsecond.
std::optional<PhotoProperties> readPhotoProperties(ByteView prefix) noexcept;

}  // namespace kestrova::imaging
