#pragma once

#include "imaging/photo_rewrite.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace kestrova::imaging {

/// What of an Exif block no longer holds once the pixels were written anew.
struct ExifPatch {
  std::optional<PixelSize> pixelSize;  ///< of the written photo, as it is stored
  bool resetOrientation = false;       ///< the written pixels stand upright
};

/// Makes a preview over: changes it within its bytes and returns how many of them it takes up now, 0 when it
/// cannot be made to fit.
using PreviewMaker = std::function<std::size_t(std::span<std::uint8_t> preview)>;

/// Patches an Exif block (a TIFF 6.0 structure, without "Exif\0\0" before it) in place: Orientation (0x0112)
/// of the photo and its preview, ImageWidth and ImageLength, PixelXDimension and PixelYDimension (0xA002,
/// 0xA003). Tags that are not there are not added; all other bytes stay as they are. The block may hold
/// anything.
void patchExif(std::span<std::uint8_t> block, const ExifPatch& patch);

/// Has the embedded preview made over by `make`; takes it out of the directories where that fails, where it
/// is no JPEG or where it claims another orientation than the photo. To be called before `patchExif`.
void remakePreview(std::span<std::uint8_t> block, const PreviewMaker& make);

}  // namespace kestrova::imaging
