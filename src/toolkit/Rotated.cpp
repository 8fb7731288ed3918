#include "toolkit/Rotated.h"

#include "platform/log.h"
#include "toolkit/image_canvas.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>

namespace kestrova::Rotated {

namespace {

using imaging::ImageType;

constexpr auto jpegType = std::string_view("public.jpeg");

/// Reports a failure in exactly these bytes, and returns a null bitmap.
QImage failure(const char* diagnostic) {
  std::fputs(diagnostic, stderr);
  return {};
}

QSizeF sizeTurned(QSizeF size, float degrees) {
  const float turn = std::abs(degrees);
  if (turn == 90.0F || turn == 270.0F) return size.transposed();
  if (turn == 180.0F) return size;
  const double side = std::max(size.width(), size.height()) + 20;
  return {side, side};
}

/// QTransform knows the quarter turns from 0 to 270 degrees exactly.
QTransform rotation(float degrees) { return QTransform().rotate(degrees < 0 ? degrees + 360.0F : degrees); }

std::optional<ImageType> imageType(std::string_view identifier) {
  if (identifier == jpegType) return ImageType::jpeg;
  if (identifier == "public.png") return ImageType::png;
  if (identifier == "public.tiff") return ImageType::tiff;
  return std::nullopt;
}

}  // namespace

ImagePtr imageRotated(const ImagePtr& image, float degrees) {
  if (std::fmod(degrees, 90.0F) != 0.0F) {
    log(QStringLiteral(
        "This code has only been tested for multiples of 90 degrees. (TODO: test and remove this line)"));
  }
  const float turn = std::fmod(degrees, 360.0F);
  if (turn == 0.0F) return image;
  const QSizeF size = image->size();
  const QSizeF turned = sizeTurned(size, turn);
  ImageCanvas canvas(turned);
  canvas.concat(rotation(turn) * QTransform::fromTranslate(turned.width() / 2, turned.height() / 2));
  canvas.draw(*image, QPointF(-size.width() / 2, -size.height() / 2), Composition::copy);
  return canvas.finish();
}

void setImageAndFrame(ImageView& view, const ImagePtr& image) {
  view.frame.setSize(image->size());
  view.image = image;
}

QImage MyCreateCGImageFromFile(const Path& path) {
  const auto file = systemFileManager()->readFile(path);
  if (!file) return failure("Image source is NULL.");
  const QImage image = decodeImage(*file);
  return image.isNull() ? failure("Image not created from image source.") : image;
}

QImage MyCreateThumbnailImageFromData(ByteView data, [[maybe_unused]] std::int32_t size) {
  if (data.empty()) return failure("Image source is NULL.");
  const QImage embedded = decodeEmbeddedThumbnail(data);
  const QImage thumbnail = embedded.isNull() ? decodeImage(data) : embedded;
  return thumbnail.isNull() ? failure("Thumbnail image not created from image source.")
                            : turnedUpright(thumbnail, data);
}

void writeCGImage(const QImage& image, const Path& toURL, std::string_view withType,
                  const EncodingProperties* andOptions) {
  const auto type = imageType(withType);
  if (!type) return;
  const auto data = encodeImage(image, *type, andOptions != nullptr ? *andOptions : EncodingProperties());
  if (data) static_cast<void>(systemFileManager()->writeDataReplacing(*data, toURL));
}

void saveJPEGImage(const QImage& image, const Path& path) {
  const EncodingProperties bestQuality{.compressionFactor = 1.0F};
  writeCGImage(image, path, jpegType, &bestQuality);
}

}  // namespace kestrova::Rotated
