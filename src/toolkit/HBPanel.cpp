#include "toolkit/HBPanel.h"

#include "platform/log.h"
#include "toolkit/image_canvas.h"
#include "toolkit/tilde.h"

#include <algorithm>
#include <cmath>
#include <fstream>

namespace kestrova::HBPanel {

namespace {

constexpr QSizeF scalesCanvas(8000, 6000);

/// Larger than any side of a picture: the thumbnail is the whole picture.
constexpr std::int32_t thumbnailMaxPixelSize = 48000000;

float snappedToQuarterTurn(float degrees) {
  if (degrees > 0 && degrees <= 90) return 90;
  if (degrees > 90 && degrees <= 180) return 180;
  if (degrees > 180 && degrees <= 270) return 270;
  if (degrees > 270 && degrees <= 360) return 360;
  return 0;
}

/// Where a picture of this size is drawn before it is turned.
QRectF rectToTurn(float quarterTurn, float w, float h) {
  if (quarterTurn == 90 || quarterTurn == 270) return {(w - h) / 2, (h - w) / 2, h, w};
  if (quarterTurn == 360) return {0, 0, h, w};
  return {0, 0, w, h};
}

QTransform turnAbout(QPointF centre, float degrees) {
  QTransform transform = QTransform::fromTranslate(centre.x(), centre.y());
  transform.rotate(degrees == 360 ? 0 : degrees);
  return transform.translate(-centre.x(), -centre.y());
}

std::uint32_t truncated(double side) { return static_cast<std::uint32_t>(std::min(side, 4294967295.0)); }

/// The picture at this point of a new canvas, where the canvas is white.
ImagePtr placedOnWhite(const Image& image, QPointF point, float whiteHeight) {
  ImageCanvas canvas(scalesCanvas);
  canvas.fillRect(QRectF(0, 0, scalesCanvas.width(), whiteHeight), Qt::white);
  canvas.draw(image, point, Composition::sourceIn);
  return canvas.finish();
}

/// Distances are scaled by this.
constexpr double gradientScale = 1.5;

std::uint8_t ring(double x, double y) {
  return static_cast<std::uint8_t>(
      std::rint(std::fmod(vectorLength(x / gradientScale, y / gradientScale), 255.0)));
}

void fillWithRings(QImage& bitmap) {
  for (int r = 0; r < bitmap.height(); ++r) {
    std::uint8_t* pixel = bitmap.scanLine(r);
    for (int c = 0; c < bitmap.width(); ++c, pixel += 4) {
      pixel[0] = ring(c, 255 - r);
      pixel[1] = ring(c, r);
      pixel[2] = ring(255 - c, 255 - r);
      pixel[3] = 255;
    }
  }
}

std::optional<Bytes> encodeFirstRepresentation(const Image& image, imaging::ImageType type,
                                               const EncodingProperties& properties) {
  return encodeImage(nsImageToCGImageRef(image), type, properties);
}

QImage shrunkToFit(const QImage& image, int side) {
  if (std::max(image.width(), image.height()) <= side) return image;
  return image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

}  // namespace

ImagePtr imageResize(const ImagePtr& image, QSizeF newSize) {
  image->setScalesWhenResized(true);
  if (!image->isValid()) {
    log(QStringLiteral("Invalid Image"));
    return nullptr;
  }
  ImageCanvas canvas(newSize);
  if (!canvas.isValid()) return nullptr;
  image->setSize(newSize);
  canvas.setImageInterpolation(Interpolation::high);
  canvas.draw(*image, QPointF(), Composition::copy);
  return canvas.finish();
}

ImagePtr rotateImage(const ImagePtr& image, float byDegrees) {
  const auto w = static_cast<float>(image->size().width());
  const auto h = static_cast<float>(image->size().height());
  const float quarterTurn = snappedToQuarterTurn(byDegrees);
  ImageCanvas canvas(image->size());
  canvas.concat(turnAbout(QPointF(w / 2, h / 2), quarterTurn));
  canvas.draw(image->bestRepresentation(), rectToTurn(quarterTurn, w, h), Composition::sourceOver);
  return canvas.finish();
}

ImagePtr createScalesImage(const ImagePtr& image, bool flipFlag, float amountReflected) {
  image->setScalesWhenResized(true);
  if (flipFlag) image->setFlipped(true);
  // Whole points, so that the picture is not drawn between two pixels.
  const std::uint32_t wi = truncated(image->size().width());
  const std::uint32_t hi = truncated(image->size().height());
  if (wi >= 8000 && hi >= 6000) {
    image->setSize(scalesCanvas);
    return image->copy();
  }
  if (wi >= 8001 && hi <= 5999) {
    image->setSize(scalesCanvas);
    return placedOnWhite(*image, QPointF(0, (6000 - hi) / 2), amountReflected * 6000);
  }
  if (wi <= 7999 && hi >= 6001) {
    image->setSize(scalesCanvas);
    return placedOnWhite(*image, QPointF((8000 - wi) / 2, 0), amountReflected * 8000);
  }
  return placedOnWhite(*image, QPointF((8000 - wi) / 2, (6000 - hi) / 2), amountReflected * 8000);
}

bool setSmoothingEffect(const ImagePtr& image) {
  const QImage& first = image->representations().at(0);
  const double pixelsWide = first.width();
  const double pixelsHigh = first.height();
  if (!(pixelsWide > 0 && pixelsHigh > 0)) return false;
  image->setSize(QSizeF(pixelsWide, pixelsHigh));
  return true;
}

ImagePtr prettyGradientImage(QSizeF size) {
  auto image = std::make_shared<Image>(size);
  const QSizeF sides = image->size();
  if (!isDecodableSize(truncated(sides.width()), truncated(sides.height()), 4)) return image;
  QImage bitmap(static_cast<int>(sides.width()), static_cast<int>(sides.height()), QImage::Format_RGBA8888);
  if (bitmap.isNull()) return image;
  fillWithRings(bitmap);
  image->addRepresentation(bitmap);
  return image;
}

float vectorLength(double x, double y) { return static_cast<float>(std::sqrt(x * x + y * y)); }

bool saveImage([[maybe_unused]] const Image& receiver, const Image& image, imaging::ImageType saveType,
               const EncodingProperties& properties, const Path& ToTarget) {
  const auto data = encodeFirstRepresentation(image, saveType, properties);
  return data && systemFileManager()->writeDataReplacing(*data, ToTarget).has_value();
}

QImage thumbnailForFile([[maybe_unused]] const Image& receiver, [[maybe_unused]] const Path& file,
                        const Path& atPath) {
  const auto bytes = systemFileManager()->readFile(expandingTilde(atPath));
  if (!bytes) return {};
  return turnedUpright(shrunkToFit(decodeImage(*bytes), thumbnailMaxPixelSize), *bytes);
}

ImagePtr imageFromCGImageRef(const QImage& image) {
  const QSizeF size = image.size();
  ImageCanvas canvas(size);
  canvas.draw(image, QRectF(QPointF(), size), Composition::sourceOver);
  return canvas.finish();
}

QImage nsImageToCGImageRef(const Image& image) {
  const auto& representations = image.representations();
  if (representations.empty()) return {};
  const auto tiff = encodeImage(representations.front(), imaging::ImageType::tiff);
  return tiff ? decodeImage(*tiff) : QImage();
}

void saveAsJpegWithName(const Image& image, const Path& path) {
  const auto data = encodeFirstRepresentation(image, imaging::ImageType::jpeg, {.compressionFactor = 1.0F});
  if (!data) return;
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(data->data()), static_cast<std::streamsize>(data->size()));
}

}  // namespace kestrova::HBPanel
