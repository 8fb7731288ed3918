#include "toolkit/tiff_codec.h"

#include "imaging/base/image_error.h"
#include "imaging/tiff/tiff_library.h"
#include "toolkit/color_profile.h"
#include "toolkit/image_codec.h"

#include <bit>
#include <utility>

namespace kestrova {

namespace {

class RgbaReader {
 public:
  explicit RgbaReader(TIFF* tiff) {
    char reason[1024] = "";
    begun_ = TIFFRGBAImageBegin(&image_, tiff, 1, reason) != 0;
  }
  ~RgbaReader() {
    if (begun_) TIFFRGBAImageEnd(&image_);
  }
  RgbaReader(const RgbaReader&) = delete;
  RgbaReader& operator=(const RgbaReader&) = delete;

  std::int64_t pixels() const { return begun_ ? std::int64_t{image_.width} * image_.height : 0; }

  QImage read() {
    if (!begun_ || !isDecodableSize(image_.width, image_.height, 4)) return {};
    // libtiff gives premultiplied red, green, blue and alpha, in this order in the memory of a little-endian
    // machine.
    QImage page(static_cast<int>(image_.width), static_cast<int>(image_.height),
                image_.alpha != 0 ? QImage::Format_RGBA8888_Premultiplied : QImage::Format_RGBX8888);
    if (page.isNull()) return page;
    image_.orientation = image_.req_orientation = ORIENTATION_TOPLEFT;  // rows as they are stored
    auto* const raster = reinterpret_cast<std::uint32_t*>(page.bits());
    return TIFFRGBAImageGet(&image_, raster, image_.width, image_.height) != 0 ? page : QImage();
  }

 private:
  TIFFRGBAImage image_{};
  bool begun_ = false;
};

void setColorSpace(QImage& page, TIFF* tiff) {
  std::uint32_t size = 0;
  const std::uint8_t* profile = nullptr;
  if (TIFFGetField(tiff, TIFFTAG_ICCPROFILE, &size, &profile) == 0) return;
  page.setColorSpace(colorSpaceFrom({profile, size}));
}

/// libtiff accepts bytes without alpha, or with alpha that is not premultiplied.
QImage writable(const QImage& image) {
  if (image.format() == QImage::Format_Grayscale8) return image;
  return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
}

int samplesPerPixel(const QImage& image) { return image.depth() / 8; }

void setFields(TIFF* tiff, const QImage& page) {
  const int samples = samplesPerPixel(page);
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(page.width()));
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(page.height()));
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samples);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, samples == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
  const std::uint16_t alpha = EXTRASAMPLE_UNASSALPHA;
  if (samples == 4) TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alpha);
  const QByteArray profile = page.colorSpace().iccProfile();
  if (!profile.isEmpty()) {
    TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(profile.size()), profile.constData());
  }
}

bool writePage(TIFF* tiff, const QImage& image) {
  QImage page = writable(image);
  if (page.isNull()) return false;
  setFields(tiff, page);
  for (int y = 0; y < page.height(); ++y) {
    if (TIFFWriteScanline(tiff, page.scanLine(y), static_cast<std::uint32_t>(y), 0) < 0) return false;
  }
  return true;
}

}  // namespace

std::vector<QImage> decodeTiff(ByteView file, std::size_t atMostPages) try {
  imaging::TiffHandle tiff(file);
  std::vector<QImage> pages;
  std::int64_t pixels = 0;
  do {
    RgbaReader reader(tiff.get());
    pixels += reader.pixels();
    QImage page = isDecodableSize(pixels, 1, 4) ? reader.read() : QImage();
    if (page.isNull()) return {};
    setColorSpace(page, tiff.get());
    pages.push_back(std::move(page));
  } while (pages.size() < atMostPages && TIFFReadDirectory(tiff.get()) != 0);
  return pages;
} catch (const imaging::ImageError&) {
  return {};
}

std::optional<Bytes> encodeTiff(std::span<const QImage> images) try {
  if (images.empty()) return std::nullopt;
  imaging::TiffHandle tiff(std::endian::native == std::endian::big);
  for (std::size_t i = 0; i < images.size(); ++i) {
    if (i > 0) tiff.check(TIFFWriteDirectory(tiff.get()) != 0);
    if (!writePage(tiff.get(), images[i])) return std::nullopt;
  }
  return tiff.finish();
} catch (const imaging::ImageError&) {
  return std::nullopt;
}

}  // namespace kestrova
