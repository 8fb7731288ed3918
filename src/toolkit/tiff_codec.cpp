#include "toolkit/tiff_codec.h"

#include "imaging/base/image_error.h"
#include "imaging/tiff/tiff_page_pixels.h"
#include "toolkit/color_profile.h"
#include "toolkit/image_codec.h"

#include <utility>

namespace kestrova {

namespace {

// The decoder's bytes are in this order in the memory of a little-endian machine.
QImage decodePage(imaging::TiffPixelDecoder& decoder) {
  const auto size = decoder.size();
  QImage page(static_cast<int>(size.width), static_cast<int>(size.height),
              decoder.hasAlpha() ? QImage::Format_RGBA8888_Premultiplied : QImage::Format_RGBX8888);
  if (page.isNull()) return page;
  decoder.decode(reinterpret_cast<std::uint32_t*>(page.bits()));
  if (const ByteView profile = decoder.profile(); !profile.empty())
    page.setColorSpace(colorSpaceFrom(profile));
  return page;
}

/// The encoder takes bytes without alpha, or with alpha that is not premultiplied.
QImage writable(const QImage& image) {
  if (image.format() == QImage::Format_Grayscale8) return image;
  return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
}

void addPage(imaging::TiffPixelEncoder& encoder, const QImage& page) {
  const QByteArray profile = page.colorSpace().iccProfile();
  encoder.add({.size = {page.width(), page.height()},
               .pixelBytes = page.depth() / 8,
               .rowAt = [&](std::int64_t y) { return page.constScanLine(static_cast<int>(y)); },
               .profile = {reinterpret_cast<const std::uint8_t*>(profile.constData()),
                           static_cast<std::size_t>(profile.size())}});
}

}  // namespace

std::vector<QImage> decodeTiff(ByteView file, std::size_t atMostPages) try {
  imaging::TiffPixelDecoder decoder(file);
  std::vector<QImage> pages;
  std::int64_t pixels = 0;
  do {
    const auto size = decoder.size();
    pixels += size.width * size.height;
    const bool fits = isDecodableSize(size.width, size.height, 4) && isDecodableSize(pixels, 1, 4);
    QImage page = fits ? decodePage(decoder) : QImage();
    if (page.isNull()) return {};
    pages.push_back(std::move(page));
  } while (pages.size() < atMostPages && decoder.openNext());
  return pages;
} catch (const imaging::ImageError&) {
  return {};
}

std::optional<Bytes> encodeTiff(std::span<const QImage> images) try {
  if (images.empty()) return std::nullopt;
  imaging::TiffPixelEncoder encoder;
  for (const QImage& image : images) {
    const QImage page = writable(image);
    if (page.isNull()) return std::nullopt;
    addPage(encoder, page);
  }
  return encoder.finish();
} catch (const imaging::ImageError&) {
  return std::nullopt;
}

}  // namespace kestrova
