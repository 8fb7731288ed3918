#pragma once

#include "imaging/base/image_size.h"
#include "imaging/jpeg/jpeg_library.h"

#include <cstdint>
#include <functional>

namespace kestrova::imaging {

/// Decodes a JPEG to the planes of its components, without converting colours or upsampling subsampled
/// components. All methods throw ImageError, also on libjpeg's first warning.
class JpegDecoder {
 public:
  /// One component as it is decoded.
  struct Plane {
    int width = 0;
    int height = 0;
    double samplesPerPixelX = 1;  ///< samples of the plane to one pixel of the whole photo
    double samplesPerPixelY = 1;
  };

  struct Options {
    bool readsProfile = false;  ///< the colour profile, with the headers
    Stopped stopped = {};       ///< where it says so, methods throw Interrupted
  };

  /// Reads the headers. The file must outlive the decoder.
  JpegDecoder(ByteView file, const Options& options);
  ~JpegDecoder() { jpeg_destroy_decompress(&info_); }
  JpegDecoder(const JpegDecoder&) = delete;
  JpegDecoder& operator=(const JpegDecoder&) = delete;

  PixelSize size() const { return {info_.image_width, info_.image_height}; }
  JpegFormat format() const;
  /// The ICC profile; empty when it was not read, or is absent or damaged.
  const Bytes& profile() const { return profile_; }
  jpeg_decompress_struct& info() { return info_; }
  JpegErrors& errors() { return errors_; }

  /// Begins to decode at `eighths`/8 of the size: 1, 2, 4 or 8. After this call the planes' sizes are known.
  void start(int eighths);
  Plane plane(std::size_t component) const;
  /// Decodes all rows; `take` gets each row of each plane, from the top, planes in turn.
  using TakeRow = std::function<void(std::size_t component, const std::uint8_t* row)>;
  void decode(const TakeRow& take);

 private:
  struct Band;  ///< the rows of one component that are decoded at a time

  void readProfile();

  JpegErrors errors_;
  jpeg_decompress_struct info_{};
  Bytes profile_;
};

/// Decodes all pixels as cheaply as possible; throws ImageError if that fails or causes a warning, and
/// Interrupted.
void verifyJpeg(ByteView file, const Stopped& stopped);

}  // namespace kestrova::imaging
