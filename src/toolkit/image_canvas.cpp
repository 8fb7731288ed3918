#include "toolkit/image_canvas.h"

#include "imaging/base/image_error.h"
#include "imaging/scale/resampler.h"
#include "toolkit/bitmap_reorientation.h"
#include "toolkit/image_codec.h"

#include <QColorSpace>
#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace kestrova {

namespace {

constexpr auto canvasFormat = QImage::Format_ARGB32_Premultiplied;

/// The whole number of pixels for a length; 0 if there are none or too many.
int wholePixels(double length) {
  return length > 0 && length < 1e9 ? std::max(1, static_cast<int>(std::lround(length))) : 0;
}

QSize wholePixels(QSizeF size) { return {wholePixels(size.width()), wholePixels(size.height())}; }

QImage transparentPixels(QSizeF points) {
  const QSize size = wholePixels(points);
  if (!isDecodableSize(size.width(), size.height(), 4)) return {};
  QImage pixels(size, canvasFormat);
  if (pixels.isNull()) return pixels;
  pixels.fill(Qt::transparent);
  pixels.setColorSpace(QColorSpace::SRgb);
  return pixels;
}

QPainter::CompositionMode painterMode(Composition composition) {
  switch (composition) {
    case Composition::copy:
      return QPainter::CompositionMode_Source;
    case Composition::sourceIn:
      return QPainter::CompositionMode_SourceIn;
    case Composition::sourceOver:
      break;
  }
  return QPainter::CompositionMode_SourceOver;
}

QImage inCanvasColors(const QImage& bitmap) {
  const QColorSpace space = bitmap.colorSpace();
  return space.isValid() && space != QColorSpace::SRgb ? bitmap.convertedToColorSpace(QColorSpace::SRgb)
                                                       : bitmap;
}

/// Scales with the same filter as a run scales photos; null if it would exceed the limits.
QImage scaledByLanczos(const QImage& bitmap, QSize pixels) {
  const QImage source = bitmap.convertToFormat(QImage::Format_RGBA8888);
  QImage result(pixels, QImage::Format_RGBA8888);
  if (source.isNull() || result.isNull()) return {};
  imaging::Resampler resampler(imaging::wholeAxis(source.width(), pixels.width()),
                               imaging::wholeAxis(source.height(), pixels.height()),
                               {.channels = 4, .bytesPerSample = 1, .alpha = true});
  int filled = 0;
  for (int row = 0; row < source.height(); ++row) {
    resampler.push(source.constScanLine(row));
    while (filled < pixels.height() && resampler.pull(result.scanLine(filled))) ++filled;
  }
  result.setColorSpace(bitmap.colorSpace());
  return result;
}

/// The one place where a bitmap changes its number of pixels at high quality.
QImage resampled(const QImage& bitmap, QSize pixels) {
  if (bitmap.size() == pixels || !isDecodableSize(pixels.width(), pixels.height(), 4)) return bitmap;
  try {
    return scaledByLanczos(bitmap, pixels);
  } catch (const imaging::ImageError&) {
    return {};
  }
}

/// The transformed bitmap, if its sides stay parallel to the axes. QPainter is half a pixel off when it
/// mirrors smoothly, so `turned` does that.
std::optional<imaging::Reorientation> exactReorientation(const QTransform& t) {
  if (t.m12() == 0 && t.m21() == 0) return imaging::Reorientation{t.m11() < 0, t.m22() < 0, false};
  if (t.m11() == 0 && t.m22() == 0) return imaging::Reorientation{t.m12() < 0, t.m21() < 0, true};
  return std::nullopt;
}

}  // namespace

ImageCanvas::ImageCanvas(QSizeF size) : size_(Image(size).size()), pixels_(transparentPixels(size_)) {
  if (!isValid()) return;
  painter_.begin(&pixels_);
  painter_.setRenderHint(QPainter::SmoothPixmapTransform);
  // The pixels cover the size exactly, so that a fraction of a point leaves no half-covered edge.
  painter_.translate(0, pixels_.height());
  painter_.scale(pixels_.width() / size_.width(), -pixels_.height() / size_.height());
}

void ImageCanvas::concat(const QTransform& transform) {
  if (isValid()) painter_.setTransform(transform, true);
}

void ImageCanvas::fillRect(const QRectF& rect, const QColor& color) {
  if (!isValid() || !rect.isValid()) return;
  painter_.setCompositionMode(QPainter::CompositionMode_Source);
  painter_.fillRect(rect & QRectF(QPointF(), size_), color);
}

void ImageCanvas::draw(const Image& image, QPointF point, Composition composition) {
  const QImage bitmap = image.bestRepresentation();
  if (!isValid() || bitmap.isNull()) return;
  const QSizeF drawn = image.scalesWhenResized() ? image.size() : QSizeF(bitmap.size());
  painter_.save();
  painter_.setClipRect(QRectF(point, image.size()));
  draw(bitmap, QRectF(point, drawn), composition, image.isFlipped() ? Rows::bottomFirst : Rows::topFirst);
  painter_.restore();
}

void ImageCanvas::draw(const QImage& bitmap, const QRectF& rect, Composition composition) {
  if (isValid() && !bitmap.isNull()) draw(bitmap, rect, composition, Rows::topFirst);
}

void ImageCanvas::draw(const QImage& bitmap, const QRectF& rect, Composition composition, Rows rows) {
  painter_.save();
  painter_.setCompositionMode(painterMode(composition));
  painter_.translate(rect.left(), rows == Rows::topFirst ? rect.top() + rect.height() : rect.top());
  painter_.scale(1, rows == Rows::topFirst ? -1 : 1);
  const QTransform& toPixels = painter_.transform();
  const QRectF own(QPointF(), rect.size());
  const QImage shown = prepared(bitmap, rect.size());
  if (const auto reorientation = exactReorientation(toPixels)) {
    const QRectF target = toPixels.mapRect(own);
    painter_.resetTransform();
    painter_.drawImage(target, reoriented(shown, *reorientation));
  } else {
    painter_.drawImage(own, shown);
  }
  painter_.restore();
}

QImage ImageCanvas::prepared(const QImage& bitmap, QSizeF points) const {
  const QImage colored = inCanvasColors(bitmap);
  if (interpolation_ != Interpolation::high) return colored;
  const QTransform& t = painter_.transform();
  const QSizeF drawn(points.width() * std::hypot(t.m11(), t.m12()),
                     points.height() * std::hypot(t.m21(), t.m22()));
  return resampled(colored, wholePixels(drawn));
}

ImagePtr ImageCanvas::finish() {
  auto image = std::make_shared<Image>(size_);
  if (!isValid()) return image;
  painter_.end();
  image->addRepresentation(std::exchange(pixels_, {}));
  return image;
}

}  // namespace kestrova
