#pragma once

#include "toolkit/image.h"

#include <QColor>
#include <QPainter>
#include <QPointF>
#include <QRectF>
#include <QTransform>

namespace kestrova {

/// How drawn pixels S are combined with the existing ones D (Porter and Duff, "Compositing Digital Images").
enum class Composition {
  copy,        ///< S
  sourceIn,    ///< S where D is opaque
  sourceOver,  ///< S over D
};

/// How bitmaps are scaled when they are drawn in another size.
enum class Interpolation {
  standard,  ///< between neighbouring pixels: fast, and enough for small changes of size
  high,      ///< every source pixel counts
};

/// A new picture to draw on. Coordinates are points; the origin is at the bottom left, y grows upwards and
/// angles turn counter-clockwise. The canvas starts transparent, with one pixel a point, in sRGB; bitmaps of
/// other colour spaces are converted. A size without area, or beyond the bounds of image_limits.h, makes an
/// invalid canvas: drawing on it does nothing.
class ImageCanvas {
 public:
  explicit ImageCanvas(QSizeF size);

  bool isValid() const { return !pixels_.isNull(); }

  void setImageInterpolation(Interpolation interpolation) { interpolation_ = interpolation; }

  /// Adds a transform in front of the current ones: what is drawn next goes through it first.
  void concat(const QTransform& transform);

  /// Replaces what is in the rectangle by a colour.
  void fillRect(const QRectF& rect, const QColor& color);

  /// Draws the whole picture in its own size, its lower left corner at `point`.
  void draw(const Image& image, QPointF point, Composition composition);

  /// Draws the bitmap scaled to the rectangle, its first row at the top.
  void draw(const QImage& bitmap, const QRectF& rect, Composition composition);

  /// Ends the drawing and returns a picture of the canvas's size; without a representation if the canvas is
  /// invalid.
  ImagePtr finish();

 private:
  enum class Rows { topFirst, bottomFirst };
  void draw(const QImage& bitmap, const QRectF& rect, Composition composition, Rows rows);
  QImage prepared(const QImage& bitmap, QSizeF points) const;

  QSizeF size_;
  QImage pixels_;
  QPainter painter_;
  Interpolation interpolation_ = Interpolation::standard;
};

}  // namespace kestrova
