#pragma once

#include "imaging/base/image_size.h"
#include "imaging/base/interruption.h"
#include "imaging/base/preview_turner.h"
#include "platform/bytes.h"

#include <cstdint>
#include <optional>
#include <span>

namespace kestrova::imaging {

/// Exif values to change after the pixels were rewritten.
struct ExifPatch {
  std::optional<PixelSize> pixelSize;  ///< of the written photo, as it is stored
  bool resetOrientation = false;       ///< the written pixels are upright
  bool exchangesAxes = false;          ///< rows have become columns
};

/// How to change a photo's metadata after its pixels.
struct MetadataEdit {
  ExifPatch exif = {};
  PreviewTurner turnPreview = {};  ///< set when the pixels were turned; may throw Interrupted
  Stopped stopped = {};
};

/// Patches an Exif block (a TIFF 6.0 structure, without "Exif\0\0" before it) in place: Orientation (0x0112)
/// of the photo and its preview, ImageWidth and ImageLength, PixelXDimension and PixelYDimension (0xA002,
/// 0xA003), XResolution and YResolution; the focal plane's resolutions describe the sensor and stay. No tags
/// are added; all other bytes stay as they are. The block may hold anything.
void patchExif(std::span<std::uint8_t> block, const ExifPatch& patch);

/// The bytes of the preview that the block's second directory names (Exif 2.3, 4.5.4); empty when there is
/// none, or when it lies outside the block.
ByteView exifPreview(ByteView block);

/// Turns the preview that the block's second directory names. The directory is removed if the preview cannot
/// be turned or has another orientation than the photo. Call it before `patchExif`.
void turnExifPreview(std::span<std::uint8_t> block, const PreviewTurner& turn);

/// Turns the preview if the edit says so, then patches the block.
void editExif(std::span<std::uint8_t> block, const MetadataEdit& edit);

}  // namespace kestrova::imaging
