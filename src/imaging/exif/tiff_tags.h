#pragma once

#include <cstdint>

// The numbers of TIFF 6.0, BigTIFF and Exif 2.3 that several modules use.
namespace kestrova::imaging {

enum class TiffType : std::uint16_t {
  byte = 1,
  ascii = 2,
  short16 = 3,
  long32 = 4,
  signedByte = 6,
  signedShort = 8,
  signedLong = 9,
  directory = 13,
  long64 = 16,
  signedLong64 = 17,
  directory64 = 18,
};

namespace tag {

enum Tag : std::uint16_t {
  subfileType = 0x00FE,
  imageWidth = 0x0100,
  imageLength = 0x0101,
  orientation = 0x0112,
  xResolution = 0x011A,
  yResolution = 0x011B,
  subDirectories = 0x014A,
  previewOffset = 0x0201,  ///< JPEGInterchangeFormat
  previewLength = 0x0202,
  xmp = 0x02BC,
  exifDirectory = 0x8769,
  dateTimeDigitized = 0x9004,
  pixelXDimension = 0xA002,
  pixelYDimension = 0xA003,
};

}  // namespace tag

}  // namespace kestrova::imaging
