#include "toolkit/png_codec.h"

#include "imaging/base/image_error.h"
#include "imaging/png/png_chunks.h"
#include "imaging/png/png_library.h"
#include "toolkit/color_profile.h"
#include "toolkit/image_codec.h"

#include <QBuffer>
#include <QImageWriter>
#include <algorithm>
#include <limits>

namespace kestrova {

namespace {

using imaging::PngFormat;

bool hasColor(const PngFormat& format) { return (format.colorType & PNG_COLOR_MASK_COLOR) != 0; }
bool hasAlpha(const PngFormat& format) { return (format.colorType & PNG_COLOR_MASK_ALPHA) != 0; }
bool isGray(const PngFormat& format) { return !hasColor(format) && !hasAlpha(format); }

QImage::Format bitmapFormat(const PngFormat& format) {
  const bool deep = format.bitDepth == 16;
  if (isGray(format)) return deep ? QImage::Format_Grayscale16 : QImage::Format_Grayscale8;
  if (deep) return hasAlpha(format) ? QImage::Format_RGBA64 : QImage::Format_RGBX64;
  return hasAlpha(format) ? QImage::Format_RGBA8888 : QImage::Format_RGBX8888;
}

/// Grey or colours, with or without opacity, as four samples a pixel.
template <typename Sample>
void spread(const PngFormat& format, const std::uint8_t* row, std::uint8_t* to) {
  const auto* from = reinterpret_cast<const Sample*>(row);
  auto* pixel = reinterpret_cast<Sample*>(to);
  const int colors = hasColor(format) ? 3 : 1;
  for (std::int64_t x = 0; x < format.size.width; ++x, from += format.channels(), pixel += 4) {
    for (int i = 0; i < 3; ++i) pixel[i] = from[colors == 3 ? i : 0];
    pixel[3] = hasAlpha(format) ? from[colors] : std::numeric_limits<Sample>::max();
  }
}

void putRow(const PngFormat& format, const std::uint8_t* row, std::uint8_t* to) {
  if (isGray(format)) {
    std::copy_n(row, format.size.width * format.pixelBytes(), to);
  } else if (format.bitDepth == 16) {
    spread<std::uint16_t>(format, row, to);
  } else {
    spread<std::uint8_t>(format, row, to);
  }
}

}  // namespace

QImage decodePng(ByteView file) try {
  imaging::requireWholePng(file);
  imaging::PngDecoder decoder(file);
  decoder.expand();
  const PngFormat& format = decoder.format();
  const int sampleBytes = format.bitDepth / 8;
  if (!isDecodableSize(format.size.width, format.size.height, 4 * sampleBytes)) return {};
  QImage image(static_cast<int>(format.size.width), static_cast<int>(format.size.height),
               bitmapFormat(format));
  if (image.isNull()) return {};
  int y = 0;
  decoder.decode([&](const std::uint8_t* row) { putRow(format, row, image.scanLine(y++)); });
  image.setColorSpace(colorSpaceFrom(imaging::pngProfile(file)));
  return image;
} catch (const imaging::ImageError&) {
  return {};
}

std::optional<Bytes> encodePng(const QImage& image) {
  QByteArray file;
  QBuffer buffer(&file);
  if (image.isNull() || !QImageWriter(&buffer, "png").write(image)) return std::nullopt;
  return Bytes(file.begin(), file.end());
}

}  // namespace kestrova
