#pragma once

#include "toolkit/image.h"

#include <QColor>
#include <QPainter>
#include <QPointF>
#include <QRectF>
#include <QTransform>

namespace kestrova {

/// How drawn pixels S meet those that are there, D (Porter and Duff, "Compositing Digital Images").
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

/// A new picture to draw into. Coordinates are points; the origin is at the bottom left, y grows upwards and
/// angles turn counter-clockwise. The canvas starts transparent, with one pixel a point, in sRGB; bitmaps of
/// other colour spaces are converted. A size without area, or beyond the bounds of image_limits.h, makes a
/// canvas that is not valid: drawing on it does nothing.
class ImageCanvas {
 public:
  explicit ImageCanvas(QSizeF size);

  bool isValid() const { return !pixels_.isNull(); }

  void setImageInterpolation(Interpolation interpolation) { interpolation_ = interpolation; }

  /// Puts a transform in front of those in effect: what is drawn next goes through it first.
  void concat(const QTransform& transform);

  /// Replaces what is in the rectangle by a colour.
  void fillRect(const QRectF& rect, const QColor& color);

  /// Draws the whole picture in its own size, its lower left corner at `point`.
  void draw(const Image& image, QPointF point, Composition composition);

  /// Draws the bitmap scaled to the rectangle, its first row at the top.
  void draw(const QImage& bitmap, const QRectF& rect, Composition composition);

  /// Ends the drawing: a picture of the canvas's size that shows it. One without representation if not valid.
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
