#include "toolkit/image_codec.h"

#include "imaging/photo_properties.h"
#include "toolkit/embedded_thumbnail.h"
#include "toolkit/exact_turn.h"
#include "toolkit/jpeg_codec.h"
#include "toolkit/png_codec.h"
#include "toolkit/tiff_codec.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QLoggingCategory>
#include <algorithm>
#include <array>

namespace kestrova {

namespace {

using imaging::ImageType;

bool startsWith(ByteView file, ByteView start) {
  return file.size() >= start.size() && std::equal(start.begin(), start.end(), file.begin());
}

template <typename... Byte>
bool startsWithBytes(ByteView file, Byte... bytes) {
  return startsWith(file, std::array<std::uint8_t, sizeof...(bytes)>{static_cast<std::uint8_t>(bytes)...});
}

std::optional<ImageType> typeOf(ByteView file) {
  if (startsWithBytes(file, 0xff, 0xd8, 0xff)) return ImageType::jpeg;
  if (startsWithBytes(file, 0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n')) return ImageType::png;
  const bool littleEndian = startsWithBytes(file, 'I', 'I', 42, 0) || startsWithBytes(file, 'I', 'I', 43, 0);
  const bool bigEndian = startsWithBytes(file, 'M', 'M', 0, 42) || startsWithBytes(file, 'M', 'M', 0, 43);
  return littleEndian || bigEndian ? std::optional(ImageType::tiff) : std::nullopt;
}

std::vector<QImage> decodeImages(ByteView file, std::size_t atMost) {
  const auto type = typeOf(file);
  if (!type) return {};
  if (*type == ImageType::tiff) return decodeTiff(file, atMost);
  const QImage image = *type == ImageType::jpeg ? decodeJpeg(file) : decodePng(file);
  return image.isNull() ? std::vector<QImage>() : std::vector{image};
}

/// The turn that stands a picture of a stored orientation upright.
ExactTurn uprightTurn(std::int64_t orientation) {
  switch (orientation) {
    case 2:
      return {true, false, false};
    case 3:
      return {true, true, false};
    case 4:
      return {false, true, false};
    case 5:
      return {false, false, true};
    case 6:
      return {false, true, true};
    case 7:
      return {true, true, true};
    case 8:
      return {true, false, true};
    default:
      return {};
  }
}

}  // namespace

bool isDecodableSize(std::int64_t width, std::int64_t height, int bytesPerPixel) {
  return width > 0 && height > 0 && width <= maximumPixelBytes &&
         height <= maximumPixelBytes / bytesPerPixel / width;
}

QImage decodeImage(ByteView file) {
  const std::vector<QImage> images = decodeImages(file, 1);
  return images.empty() ? QImage() : images.front();
}

std::vector<QImage> decodeImagesUpright(ByteView file) {
  std::vector<QImage> images = decodeImages(file, maximumPages);
  for (QImage& image : images) image = turnedUpright(image, file);
  return images;
}

QImage decodeEmbeddedThumbnail(ByteView file) { return decodeJpeg(embeddedThumbnail(file)); }

QImage turnedUpright(const QImage& stored, ByteView file) {
  const auto properties = imaging::readPhotoProperties(file);
  return turned(stored, uprightTurn(properties ? properties->orientation.value_or(1) : 1));
}

std::optional<Bytes> encodeImage(const QImage& image, ImageType type, EncodingProperties properties) {
  switch (type) {
    case ImageType::jpeg:
      return encodeJpeg(image, properties.compressionFactor);
    case ImageType::png:
      return encodePng(image);
    case ImageType::tiff:
      break;
  }
  return encodeTiff(std::span(&image, 1));
}

}  // namespace kestrova
