#pragma once

#include "imaging/base/image_size.h"
#include "imaging/tiff/tiff_library.h"
#include "platform/bytes.h"

#include <cstdint>
#include <functional>

// Pages of TIFFs as whole pixels, for showing a picture rather than rewriting a photo.
namespace kestrova::imaging {

/// Decodes the pages of a TIFF or BigTIFF, one after the other, to pixels of four bytes: red, green, blue and
/// opacity, by which the colours are multiplied. It reads more kinds of pixels than TiffDecoder, but gives
/// all of them 8 bits a sample.
class TiffPixelDecoder {
 public:
  /// Opens the first page. Throws ImageError if it cannot be decoded. The file must outlive the decoder.
  explicit TiffPixelDecoder(ByteView file);
  ~TiffPixelDecoder() { end(); }
  TiffPixelDecoder(const TiffPixelDecoder&) = delete;
  TiffPixelDecoder& operator=(const TiffPixelDecoder&) = delete;

  // Of the current page.
  PixelSize size() const { return {image_.width, image_.height}; }
  bool hasAlpha() const { return image_.alpha != 0; }
  /// The ICC profile; empty when there is none.
  ByteView profile();
  /// Decodes all rows, from the top, as they are stored, one after the other without gaps. Throws ImageError.
  void decode(std::uint32_t* pixels);

  /// Opens the next page; false if there is none. Throws ImageError if it cannot be decoded.
  bool openNext();

 private:
  void begin();
  void end();

  TiffHandle tiff_;
  TIFFRGBAImage image_{};
  bool hasBegun_ = false;
};

struct TiffPixels {
  PixelSize size;
  int pixelBytes = 3;  ///< 1: grey; 3: red, green, blue; 4: these and opacity that they are not multiplied by
  std::function<const std::uint8_t*(std::int64_t y)> rowAt;
  ByteView profile = {};  ///< ICC; left out when it is empty
};

/// Encodes a TIFF of one or more uncompressed pages.
class TiffPixelEncoder {
 public:
  TiffPixelEncoder();

  /// Throws ImageError.
  void add(const TiffPixels& page);
  /// The file. Throws ImageError.
  Bytes finish() { return tiff_.finish(); }

 private:
  void setFields(const TiffPixels& page);

  TiffHandle tiff_;
  bool hasPages_ = false;
};

}  // namespace kestrova::imaging
