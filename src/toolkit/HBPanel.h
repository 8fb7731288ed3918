#pragma once

#include "toolkit/image.h"
#include "toolkit/image_codec.h"

/// Scaling, placing and generating pictures, and exchanging them with bitmaps and files. A bitmap is a
/// QImage, a null one means failure. Sizes are in points, angles counter-clockwise, the origin is at the
/// bottom left. The routines keep no state; each call works on its own pictures, on any thread. Those that
/// change the size of the given picture say so; no other thread may use it at the same time.
namespace kestrova::HBPanel {

/// The picture in exactly this size, even if its aspect ratio differs. The given picture gets the size too.
/// Null, after a line in the log, when it has no pixels; null when the size has no area or is too large.
ImagePtr imageResize(const ImagePtr& image, QSizeF newSize);

/// The picture turned by the quarter turn at or above the angle, on a canvas of its own size. 360 degrees
/// draw a picture that is not square into its height by its width. Angles outside (0, 360] do not turn it.
ImagePtr rotateImage(const ImagePtr& image, float byDegrees);

/// The picture on a canvas of 8000 by 6000, shown only where `amountReflected` has filled the canvas with
/// white before: that share of 6000 (for wide pictures) or 8000 points, from the bottom. A picture at least
/// as large as the canvas is made its size, and a copy returned. The picture is set to be scaled, to be
/// flipped where wanted, and where a side exceeds the canvas, to the canvas's size.
ImagePtr createScalesImage(const ImagePtr& image, bool flipFlag, float amountReflected);

/// Makes the picture's size that of its first representation in pixels, so that it draws one point a pixel;
/// false when that has none. Throws std::out_of_range when the picture has no representation at all.
bool setSmoothingEffect(const ImagePtr& image);

/// A synthetic test picture: in red, green and blue the distance from one corner each of a field of 256 by
/// 256, wrapped into rings. A size without a whole pixel, or too large, gives a picture without
/// representation.
ImagePtr prettyGradientImage(QSizeF size);

/// The length of a vector.
float vectorLength(double x, double y);

/// Writes the picture's first representation; whole or not at all, replacing what is there. False on failure.
bool saveImage(const Image& receiver, const Image& image, imaging::ImageType saveType,
               const EncodingProperties& properties, const Path& ToTarget);

/// The whole picture in the file at `atPath`, turned upright. A tilde at its beginning stands for a home
/// folder. Null if there is none; nothing is reported. `file` has no effect.
QImage thumbnailForFile(const Image& receiver, const Path& file, const Path& atPath);

/// A picture of the bitmap's size in pixels that shows it.
ImagePtr imageFromCGImageRef(const QImage& image);

/// The picture's first representation, 8 bits a sample; null when it has none.
QImage nsImageToCGImageRef(const Image& image);

/// Writes the picture's first representation as a JPEG of the best quality, straight into the file. No
/// failure is reported.
void saveAsJpegWithName(const Image& image, const Path& path);

}  // namespace kestrova::HBPanel
