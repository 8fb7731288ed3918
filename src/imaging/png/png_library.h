#pragma once

#include "imaging/base/image_error.h"
#include "imaging/base/raster.h"
#include "platform/bytes.h"

#include <array>
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include <png.h>

// What is needed to use libpng from C++.
namespace kestrova::imaging {

/// Where libpng jumps on an error; a warning counts as one.
class PngErrors {
 public:
  /// Runs `call`, which calls libpng and keeps no object with a destructor. Throws ImageError from here,
  /// where no C frame has to be unwound.
  template <class Call>
  [[gnu::noinline]] void guarded(const Call& call) {
    if (setjmp(escape_) != 0) throw ImageError(message_.data());
    call();
  }

  /// libpng's error and warning function; its error pointer points to a PngErrors.
  static void leave(png_structp png, png_const_charp message);
  static void ignore(png_structp, png_const_charp) {}

 private:
  std::jmp_buf escape_{};
  std::array<char, 200> message_{};
};

/// The fields of IHDR.
struct PngFormat {
  PixelSize size;
  int bitDepth = 8;
  int colorType = PNG_COLOR_TYPE_RGB;
  int interlace = PNG_INTERLACE_NONE;

  int channels() const;
  /// Of a row as it is decoded: pixels of less than 8 bits take up a byte each.
  int pixelBytes() const { return channels() * (bitDepth == 16 ? 2 : 1); }
};

/// Decodes a PNG. Throws ImageError, also on libpng's first warning.
class PngDecoder {
 public:
  /// What is wanted from the file apart from its header.
  enum class Wants { pixels, profile };

  /// Reads the headers. The file must outlive the decoder; its checksums are not checked. Only a decoder for
  /// pixels treats warnings as errors.
  explicit PngDecoder(ByteView file, Wants wants = Wants::pixels);
  ~PngDecoder() { png_destroy_read_struct(&png_, &info_, nullptr); }
  PngDecoder(const PngDecoder&) = delete;
  PngDecoder& operator=(const PngDecoder&) = delete;

  /// As the file has them; after `expand`, as they are decoded.
  const PngFormat& format() const { return format_; }
  std::vector<png_color> palette();
  /// The ICC profile; empty when it was not wanted or is absent.
  Bytes profile();

  /// Makes palettes decode to colours, grey of less than 8 bits to 8 bits, and a transparent colour to
  /// opacity.
  void expand();
  /// Decodes all rows, from the top; samples of 16 bits in the machine's byte order. Throws Interrupted.
  using TakeRow = std::function<void(const std::uint8_t* row)>;
  void decode(const TakeRow& take, const Stopped& stopped = {});

 private:
  static void read(png_structp png, png_bytep to, std::size_t count);
  void readHeaders(Wants wants);
  void readFormat();
  void decodeRows(const TakeRow& take, const Stopped& stopped);
  void decodeInterlaced(int passes, const TakeRow& take, const Stopped& stopped);

  PngErrors errors_;
  ByteView rest_;
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  PngFormat format_;
};

/// The ICC profile of a PNG; empty when there is none, or it is damaged.
Bytes pngProfile(ByteView file);

/// The pixels of a PNG.
struct PngPicture {
  PngFormat format;
  std::vector<png_color> palette;  ///< if the format has one
  Raster raster;                   ///< rows as PngDecoder returns them
};

/// Throws ImageError, and Interrupted.
Bytes encodePng(const PngPicture& picture, const Stopped& stopped);

}  // namespace kestrova::imaging
