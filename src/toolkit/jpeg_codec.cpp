#include "toolkit/jpeg_codec.h"

#include "imaging/base/image_error.h"
#include "imaging/jpeg/jpeg_pixels.h"
#include "toolkit/color_profile.h"
#include "toolkit/image_codec.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace kestrova {

namespace {

QImage withoutTransparency(const QImage& image) {
  if (!image.hasAlphaChannel()) return image;
  QImage opaque(image.size(), QImage::Format_RGBX8888);
  opaque.fill(Qt::white);
  opaque.setColorSpace(image.colorSpace());
  QPainter(&opaque).drawImage(0, 0, image);
  return opaque;
}

}  // namespace

QImage decodeJpeg(ByteView file) try {
  imaging::JpegPixelDecoder decoder(file);
  const auto size = decoder.size();
  if (!isDecodableSize(size.width, size.height, 4)) return {};
  QImage image(static_cast<int>(size.width), static_cast<int>(size.height),
               decoder.isGray() ? QImage::Format_Grayscale8 : QImage::Format_RGBX8888);
  if (image.isNull()) return {};
  decoder.decode([&](std::int64_t y) { return image.scanLine(static_cast<int>(y)); });
  image.setColorSpace(colorSpaceFrom(decoder.profile()));
  return image;
} catch (const imaging::ImageError&) {
  return {};
}

std::optional<Bytes> encodeJpeg(const QImage& image, float quality) try {
  if (image.isNull()) return std::nullopt;
  const bool gray = image.format() == QImage::Format_Grayscale8;
  const QImage source = gray ? image : withoutTransparency(image).convertToFormat(QImage::Format_RGBX8888);
  const int pixelsPerColor = quality < 1.0F ? 2 : 1;
  const QByteArray profile = image.colorSpace().iccProfile();
  const imaging::JpegPixels pixels{
      .size = {source.width(), source.height()},
      .pixelBytes = gray ? 1 : 4,
      .rowAt = [&](std::int64_t y) { return source.constScanLine(static_cast<int>(y)); },
  };
  return imaging::encodePixels(pixels,
                               {.quality = std::clamp(static_cast<int>(std::lround(quality * 100)), 1, 100),
                                .pixelsPerColorX = pixelsPerColor,
                                .pixelsPerColorY = pixelsPerColor,
                                .profile = {reinterpret_cast<const std::uint8_t*>(profile.constData()),
                                            static_cast<std::size_t>(profile.size())}});
} catch (const imaging::ImageError&) {
  return std::nullopt;
}

}  // namespace kestrova
