#include "toolkit/image.h"

#include "toolkit/image_codec.h"

#include <algorithm>
#include <cmath>

namespace kestrova {

namespace {

double side(double points) { return std::isfinite(points) ? std::max(points, 0.0) : 0.0; }

std::int64_t pixelCount(const QImage& bitmap) { return std::int64_t{bitmap.width()} * bitmap.height(); }

bool hasFewerPixels(const QImage& a, const QImage& b) { return pixelCount(a) < pixelCount(b); }

}  // namespace

Image::Image(QSizeF size) { setSize(size); }

ImagePtr Image::fromData(ByteView file) {
  const std::vector<QImage> pages = decodeImagesUpright(file);
  if (pages.empty()) return nullptr;
  auto image = std::make_shared<Image>(QSizeF());
  for (const QImage& page : pages) image->addRepresentation(page);
  image->setSize(image->bestRepresentation().size());
  return image;
}

ImagePtr Image::fromFile(const Path& file) {
  const auto bytes = systemFileManager()->readFile(file);
  return bytes ? fromData(*bytes) : nullptr;
}

void Image::setSize(QSizeF size) { size_ = QSizeF(side(size.width()), side(size.height())); }

QImage Image::bestRepresentation() const {
  const auto best = std::max_element(representations_.begin(), representations_.end(), hasFewerPixels);
  return best == representations_.end() ? QImage() : *best;
}

}  // namespace kestrova
