#pragma once

#include "toolkit/image.h"
#include "toolkit/image_codec.h"

#include <QRectF>
#include <string_view>

namespace kestrova {

/// A view that shows a picture; the frame is in its parent's coordinates, in points.
struct ImageView {
  QRectF frame;
  ImagePtr image;
};

/// Turning a picture, and reading and writing bitmaps. A bitmap is a QImage, a null one means failure. The
/// routines keep no state; each call works on its own pictures, on any thread.
namespace Rotated {

/// The picture turned counter-clockwise about its centre: a new one, or the receiver itself when the turn is
/// a whole number of full ones. Quarter turns fit the result to the picture; any other angle, after a line in
/// the log, draws into a square that is 20 points wider than the longer side.
ImagePtr imageRotated(const ImagePtr& image, float degrees);

/// Shows the picture and gives the view its size; the frame's origin stays.
void setImageAndFrame(ImageView& view, const ImagePtr& image);

/// The first picture in the file, as its pixels are stored. Null on failure, after a text on standard error.
QImage MyCreateCGImageFromFile(const Path& path);

/// The preview embedded in the file or, where it has none, the whole picture at its own size; turned upright.
/// `size` has no effect. Null on failure, after a text on standard error.
QImage MyCreateThumbnailImageFromData(ByteView data, std::int32_t size);

/// Writes the bitmap as "public.jpeg", "public.png" or "public.tiff". Nothing is written for a null bitmap or
/// any other type, and no failure is reported.
void writeCGImage(const QImage& image, const Path& toURL, std::string_view withType,
                  const EncodingProperties* andOptions = nullptr);

/// Writes the bitmap as a JPEG of the best quality. No failure is reported.
void saveJPEGImage(const QImage& image, const Path& path);

}  // namespace Rotated
}  // namespace kestrova
