#pragma once

#include "imaging/base/preview_turner.h"
#include "imaging/jpeg/jpeg_outline.h"
#include "imaging/jpeg/multi_picture.h"
#include "platform/bytes.h"

#include <cstddef>
#include <optional>
#include <span>

namespace kestrova::imaging {

/// The bytes after the picture in a JPEG file, which go into the result. Pictures listed in a multi-picture
/// index are handled; everything else is copied. An index that names a picture outside these bytes is left
/// out.
class JpegTrailer {
 public:
  /// The file must outlive the trailer.
  JpegTrailer(ByteView file, const JpegOutline& outline);

  /// Turns the further pictures with the photo; leaves them out with their index when one of them cannot be
  /// turned. A picture with an orientation of its own stays as it is.
  void turnPictures(const PreviewTurner& turn);

  /// Whether the segment holds the index of the pictures that are kept.
  bool isIndex(const JpegSegment& segment) const { return index_ && segment.offset == indexSegment_.offset; }
  /// Whether the segment holds an index that is not kept.
  bool leavesOut(const JpegSegment& segment) const;

  ByteView bytes() const { return bytes_; }

  /// Updates the index, whose payload is at `payload` in `file`, to the pictures, which will follow the end
  /// of `file`.
  void writeIndex(Bytes& file, std::size_t payload) const;

 private:
  std::span<std::uint8_t> bytesOf(const FurtherPicture& picture);
  bool turnAll(const PreviewTurner& turn);
  void removePictures();

  ByteView file_;
  std::size_t imageEnd_;
  Bytes bytes_;
  std::optional<MultiPictureIndex> index_;
  JpegSegment indexSegment_;
};

}  // namespace kestrova::imaging
