#pragma once

#include "platform/bytes.h"
#include "support/photo_parts.h"
#include "support/tiff_writer.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace kestrova::test {

/// A photo to generate: what it shows and what it says about itself. The same values always give the same
/// bytes.
struct SamplePhoto {
  int width = 640;
  int height = 480;
  unsigned seed = 0;  ///< photos of different seeds show different pictures

  bool exif = true;                               ///< false: no Exif block at all
  std::optional<int> orientation = {};            ///< 1 to 8
  std::string digitized = "2014:05:21 13:45:02";  ///< DateTimeDigitized (0x9004); empty: left out
  std::string taken = {};                         ///< DateTimeOriginal (0x9003); empty: left out
  bool exifPixelSize = false;                     ///< PixelXDimension and PixelYDimension
  bool bigEndian = false;                         ///< the Exif block, and a whole TIFF file
  bool bigTiff = false;                           ///< TIFF files only
  bool thumbnail = false;                         ///< a preview in the Exif block of a JPEG
  std::size_t descriptionBytes = 0;               ///< before the Exif directory
  std::size_t makerNoteBytes = 0;                 ///< after the dates
  Bytes makerNote = {};                           ///< instead of that many meaningless bytes
  bool progressive = false;                       ///< JPEG only
};

/// The picture, row by row, three bytes (red, green, blue) a pixel: a gradient with rings around a point off
/// the centre, a red block in the top left corner and a blue strip along the top right, so that it looks
/// different in every orientation.
Bytes samplePixels(int width, int height, unsigned seed = 0);

/// The photo's metadata as a TIFF block, without "Exif\0\0" before it.
TiffBlock exifBlock(const SamplePhoto& photo);

Bytes jpegPhoto(const SamplePhoto& photo);  ///< 4:2:0, quality 90; Exif first, then JFIF
Bytes pngPhoto(const SamplePhoto& photo);   ///< 8 bit, Exif in an eXIf chunk before the pixels
Bytes tiffPhoto(const SamplePhoto& photo);  ///< uncompressed, the directories at its front

/// Turns the block into a grey TIFF that claims that size and has 200 bytes of pixels.
void claimSize(TiffBlock& file, std::uint64_t width, std::uint64_t height, std::uint64_t compression = 1);

/// A file of exactly `size` bytes whose first bytes are those of a film (ISO base media).
Bytes videoFile(std::size_t size, unsigned seed = 0);

}  // namespace kestrova::test
