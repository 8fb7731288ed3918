#include "imaging/jpeg/jpeg_outline.h"

#include "imaging/base/image_error.h"
#include "imaging/jpeg/jpeg_properties.h"

namespace kestrova::imaging {

JpegOutline outlineJpeg(ByteView file) {
  if (!beginsLikeJpeg(file)) throw ImageError("not a JPEG");
  JpegOutline outline;
  int scans = 0;
  JpegWalker walker(file);
  while (const auto segment = walker.next()) {
    if (segment->marker == jpeg_marker::startOfScan) ++scans;
    if (scans > maxJpegScans) throw ImageError("the JPEG has too many scans");
    if (segment->isMetadata()) outline.metadata.push_back(*segment);
    if (segment->marker == jpeg_marker::endOfImage) {
      outline.imageEnd = segment->offset;
      return outline;
    }
  }
  throw ImageError("the JPEG is cut off");
}

}  // namespace kestrova::imaging
