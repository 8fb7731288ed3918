#pragma once

#include "imaging/tiff/tiff_library.h"
#include "imaging/tiff/tiff_pixels.h"

#include <cstdint>
#include <functional>

namespace kestrova::imaging {

/// Decodes one page of a TIFF row by row, from strips or tiles, in one or several planes.
class TiffDecoder {
 public:
  /// Reads the page's directory; throws ImageError when the pixels are of an unsupported kind. The file must
  /// outlive the decoder.
  TiffDecoder(ByteView file, std::uint64_t directory);

  const TiffFormat& format() const { return format_; }

  /// Decodes all rows, from the top: samples of one byte (also those of less than 8 bits) or two,
  /// interleaved. Throws ImageError, and Interrupted.
  using TakeRow = std::function<void(const std::uint8_t* row)>;
  void decode(const TakeRow& take, const Stopped& stopped);

 private:
  struct Tiles;

  void readFormat();
  void readColorMap();
  void readExtraSamples();
  void requireSupported();
  void decodeStrips(const TakeRow& take, const Stopped& stopped);
  void decodeTiles(const TakeRow& take, const Stopped& stopped);
  void decodeBand(Tiles& tiles, std::uint32_t top, const Stopped& stopped);
  void spread(const std::uint8_t* packed, std::int64_t pixels, int plane, std::uint8_t* row) const;

  ByteView file_;
  std::uint64_t directory_;
  TiffHandle tiff_;
  TiffFormat format_;
};

}  // namespace kestrova::imaging
