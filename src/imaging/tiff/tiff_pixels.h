#pragma once

#include "imaging/base/raster.h"
#include "imaging/base/rewrite_plan.h"
#include "platform/bytes.h"

#include <array>
#include <cstdint>
#include <vector>

namespace kestrova::imaging {

/// How the pixels of a TIFF's page are laid out and encoded, by the numbers of TIFF 6.0.
struct TiffFormat {
  bool bigEndian = false;
  PixelSize size;
  int bitsPerSample = 1;
  int samplesPerPixel = 1;
  std::uint16_t photometric = 1;
  std::uint16_t compression = 1;
  std::uint16_t predictor = 0;            ///< 0 when not stated
  std::uint16_t planarConfiguration = 0;  ///< 0 when not stated
  std::vector<std::uint16_t> extraSamples;
  std::array<std::vector<std::uint16_t>, 3> colorMap;  ///< red, green, blue of 16 bits; of a palette
  std::array<float, 2> resolution{};                   ///< pixels a unit, across and down; 0 when not stated

  int sampleBytes() const { return bitsPerSample == 16 ? 2 : 1; }
  bool hasPlanes() const { return planarConfiguration == 2 && samplesPerPixel > 1; }
  int planes() const { return hasPlanes() ? samplesPerPixel : 1; }
  int samplesPerPlane() const { return hasPlanes() ? 1 : samplesPerPixel; }
  int pixelBytes() const { return samplesPerPixel * sampleBytes(); }
  bool hasPalette() const { return !colorMap[0].empty(); }
};

struct TiffPicture {
  TiffFormat format;
  Raster raster;  ///< samples of one byte (also those of less than 8 bits) or two, in the machine's order
};

/// Decodes a page of a TIFF as the plan wants it: tiles, separate planes, less than 8 bits and palettes too.
/// Scaled pictures have at least 8 bits a sample, and colours instead of a palette. Throws ImageError,
/// and Interrupted.
TiffPicture decodeTiff(ByteView file, std::uint64_t directory, const RewritePlan& plan);

/// Decodes all pixels of a page; throws ImageError when that cannot be done, and Interrupted.
void verifyTiff(ByteView file, std::uint64_t directory, const Stopped& stopped);

}  // namespace kestrova::imaging
