#pragma once

#include "imaging/base/image_size.h"
#include "imaging/base/preview_turner.h"
#include "platform/bytes.h"

#include <cstdint>
#include <optional>
#include <span>

namespace kestrova::imaging {

/// What of an Exif block no longer holds once the pixels were written anew.
struct ExifPatch {
  std::optional<PixelSize> pixelSize;  ///< of the written photo, as it is stored
  bool resetOrientation = false;       ///< the written pixels stand upright
  bool exchangesAxes = false;          ///< what was across is down now
};

/// How a photo's metadata follow its new pixels.
struct MetadataEdit {
  ExifPatch exif;
  PreviewTurner turnPreview;  ///< set when the pixels were turned
};

/// Patches an Exif block (a TIFF 6.0 structure, without "Exif\0\0" before it) in place: Orientation (0x0112)
/// of the photo and its preview, ImageWidth and ImageLength, PixelXDimension and PixelYDimension (0xA002,
/// 0xA003), XResolution and YResolution; those in the focal plane are the camera's and stay. Tags that are
/// not there are not added; all other bytes stay as they are. The block may hold anything.
void patchExif(std::span<std::uint8_t> block, const ExifPatch& patch);

/// The bytes of the preview that the block's second directory names (Exif 2.3, 4.5.4); empty when there is
/// none, or it does not stand in the block.
ByteView exifPreview(ByteView block);

/// Turns the preview that the block's second directory names. The directory is taken out when the preview
/// cannot be turned or claims another orientation than the photo. To be called before `patchExif`.
void turnExifPreview(std::span<std::uint8_t> block, const PreviewTurner& turn);

/// Both, as far as the edit asks for it.
void editExif(std::span<std::uint8_t> block, const MetadataEdit& edit);

}  // namespace kestrova::imaging
