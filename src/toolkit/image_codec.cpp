#include "toolkit/image_codec.h"

#include "imaging/base/image_limits.h"
#include "imaging/photo_preview.h"
#include "imaging/photo_properties.h"
#include "toolkit/bitmap_reorientation.h"
#include "toolkit/jpeg_codec.h"
#include "toolkit/png_codec.h"
#include "toolkit/tiff_codec.h"

namespace kestrova {

namespace {

using imaging::ImageType;

std::vector<QImage> decodeImages(ByteView file, std::size_t atMost) {
  const auto type = imaging::imageTypeOf(file);
  if (!type) return {};
  if (*type == ImageType::tiff) return decodeTiff(file, atMost);
  const QImage image = *type == ImageType::jpeg ? decodeJpeg(file) : decodePng(file);
  return image.isNull() ? std::vector<QImage>() : std::vector{image};
}

}  // namespace

bool isDecodableSize(std::int64_t width, std::int64_t height, int bytesPerPixel) {
  return width > 0 && height > 0 && width <= imaging::maxWorkingBytes &&
         height <= imaging::maxWorkingBytes / bytesPerPixel / width;
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

QImage decodeEmbeddedThumbnail(ByteView file) { return decodeJpeg(imaging::embeddedPreview(file)); }

QImage turnedUpright(const QImage& stored, ByteView file) {
  const auto properties = imaging::readPhotoProperties(file);
  return reoriented(stored, imaging::reorientationFrom(properties ? properties->orientation.value_or(1) : 1));
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
