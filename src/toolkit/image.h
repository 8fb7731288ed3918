#pragma once

#include "platform/file_manager.h"

#include <QImage>
#include <QSizeF>
#include <memory>
#include <vector>

namespace kestrova {

/// A drawable picture: a size in points, and any number of bitmaps (representations) that show it. The size
/// is independent of the bitmaps' pixels. A representation is a QImage: shared, never changed by those who
/// hold it. An Image belongs to one thread at a time.
class Image {
 public:
  /// A picture that shows nothing yet. A side that is negative or not finite counts as 0.
  explicit Image(QSizeF size);

  /// The picture in a JPEG, PNG or TIFF file's bytes, turned upright by its stored orientation, one point a
  /// pixel; the pages of a TIFF become one representation each. Null when it does not decode completely.
  static std::shared_ptr<Image> fromData(ByteView file);
  static std::shared_ptr<Image> fromFile(const Path& file);

  QSizeF size() const { return size_; }
  void setSize(QSizeF size);

  /// Whether representations are scaled to the size. Otherwise (the default) they are shown one point a pixel
  /// from the lower left corner, and the size only crops them.
  bool scalesWhenResized() const { return scalesWhenResized_; }
  void setScalesWhenResized(bool scales) { scalesWhenResized_ = scales; }

  /// A flipped picture is drawn upside down.
  bool isFlipped() const { return flipped_; }
  void setFlipped(bool flipped) { flipped_ = flipped; }

  /// Whether there are any pixels to draw.
  bool isValid() const { return !bestRepresentation().isNull(); }

  std::shared_ptr<Image> copy() const { return std::make_shared<Image>(*this); }

  const std::vector<QImage>& representations() const { return representations_; }
  void addRepresentation(QImage bitmap) { representations_.push_back(std::move(bitmap)); }

  /// The representation with the most pixels, the first of equals; a null image if there is none.
  QImage bestRepresentation() const;

 private:
  QSizeF size_;
  std::vector<QImage> representations_;
  bool scalesWhenResized_ = false;
  bool flipped_ = false;
};

using ImagePtr = std::shared_ptr<Image>;

}  // namespace kestrova
