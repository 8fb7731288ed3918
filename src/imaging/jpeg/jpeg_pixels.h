#pragma once

#include "imaging/base/image_size.h"
#include "imaging/jpeg/jpeg_decoder.h"
#include "platform/bytes.h"

#include <cstddef>
#include <cstdint>
#include <functional>

// JPEGs as whole pixels, for showing a picture rather than rewriting a photo.
namespace kestrova::imaging {

/// Decodes a JPEG to grey pixels of one byte, or to pixels of four: red, green, blue and 255. All methods
/// throw ImageError, also on libjpeg's first warning.
class JpegPixelDecoder {
 public:
  /// Reads the headers. The file must outlive the decoder.
  explicit JpegPixelDecoder(ByteView file);

  PixelSize size() const { return decoder_.size(); }
  bool isGray() const { return colorSpace_ == JCS_GRAYSCALE; }
  /// The ICC profile; empty when there is none, or a piece of it is missing.
  const Bytes& profile() const { return decoder_.profile(); }

  /// Decodes all rows, from the top, each into the buffer that `rowAt` returns for it. Call it once.
  using RowAt = std::function<std::uint8_t*(std::int64_t y)>;
  void decode(const RowAt& rowAt);

 private:
  void convertFromCmyk(std::uint8_t* row);

  JpegDecoder decoder_;
  J_COLOR_SPACE colorSpace_;  ///< to decode to
};

struct JpegPixels {
  PixelSize size;
  int pixelBytes = 3;  ///< 1: grey; 3: red, green, blue; 4: red, green, blue and a byte without meaning
  std::function<const std::uint8_t*(std::int64_t y)> rowAt;
};

struct JpegSettings {
  int quality = 90;         ///< as libjpeg counts it, 1 to 100
  int pixelsPerColorX = 1;  ///< pixels that share one colour sample along a row: 1 or 2
  int pixelsPerColorY = 1;
  ByteView profile = {};  ///< ICC; left out when it is empty, or too long for a JPEG
};

/// A JPEG file of these pixels. Throws ImageError.
Bytes encodePixels(const JpegPixels& pixels, const JpegSettings& settings);

}  // namespace kestrova::imaging
