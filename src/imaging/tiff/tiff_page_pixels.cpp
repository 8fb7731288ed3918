#include "imaging/tiff/tiff_page_pixels.h"

#include "imaging/base/image_error.h"

#include <bit>

namespace kestrova::imaging {

TiffPixelDecoder::TiffPixelDecoder(ByteView file) : tiff_(file) { begin(); }

void TiffPixelDecoder::begin() {
  constexpr int stopsOnError = 1;
  char reason[1024] = "";
  hasBegun_ = TIFFRGBAImageBegin(&image_, tiff_.get(), stopsOnError, reason) != 0;
  if (!hasBegun_) throw ImageError(reason);
}

void TiffPixelDecoder::end() {
  if (hasBegun_) TIFFRGBAImageEnd(&image_);
  hasBegun_ = false;
}

ByteView TiffPixelDecoder::profile() {
  std::uint32_t size = 0;
  const std::uint8_t* profile = nullptr;
  if (TIFFGetField(tiff_.get(), TIFFTAG_ICCPROFILE, &size, &profile) == 0) return {};
  return {profile, size};
}

void TiffPixelDecoder::decode(std::uint32_t* pixels) {
  image_.orientation = image_.req_orientation = ORIENTATION_TOPLEFT;  // rows as they are stored
  if (TIFFRGBAImageGet(&image_, pixels, image_.width, image_.height) == 0)
    throw ImageError("the TIFF does not decode");
}

bool TiffPixelDecoder::openNext() {
  end();
  if (TIFFReadDirectory(tiff_.get()) == 0) return false;
  begin();
  return true;
}

TiffPixelEncoder::TiffPixelEncoder() : tiff_(std::endian::native == std::endian::big) {}

void TiffPixelEncoder::add(const TiffPixels& page) {
  if (hasPages_) tiff_.check(TIFFWriteDirectory(tiff_.get()) != 0);
  hasPages_ = true;
  setFields(page);
  for (std::int64_t y = 0; y < page.size.height; ++y) {
    // libtiff only reads what is to be written.
    auto* const row = const_cast<std::uint8_t*>(page.rowAt(y));
    tiff_.check(TIFFWriteScanline(tiff_.get(), row, static_cast<std::uint32_t>(y), 0) >= 0);
  }
}

void TiffPixelEncoder::setFields(const TiffPixels& page) {
  TIFF* tiff = tiff_.get();
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(page.size.width));
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(page.size.height));
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, page.pixelBytes);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, page.pixelBytes == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
  const std::uint16_t alpha = EXTRASAMPLE_UNASSALPHA;
  if (page.pixelBytes == 4) TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alpha);
  if (!page.profile.empty()) {
    TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(page.profile.size()),
                 page.profile.data());
  }
}

}  // namespace kestrova::imaging
