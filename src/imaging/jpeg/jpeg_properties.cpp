#include "imaging/jpeg/jpeg_properties.h"

#include "imaging/base/begins_with.h"
#include "imaging/base/byte_reader.h"
#include "imaging/exif/exif_block.h"
#include "imaging/exif/exif_values.h"
#include "imaging/jpeg/jpeg_segments.h"

#include <bit>
#include <cstdint>
#include <optional>

namespace kestrova::imaging {

namespace {

/// ITU-T T.81, B.2.2: sample precision, number of lines, samples per line.
void takeFrameSize(PhotoProperties& into, ByteView frameHeader) noexcept {
  constexpr std::uint64_t linesAt = 1;
  constexpr std::uint64_t samplesAt = 3;
  const ByteReader reader(frameHeader, std::endian::big);
  if (!reader.at<std::uint16_t>(samplesAt)) return;
  takeNumber(into.pixelHeight, reader.at<std::uint16_t>(linesAt));
  takeNumber(into.pixelWidth, reader.at<std::uint16_t>(samplesAt));
}

bool endsHeaders(const JpegSegment& segment) noexcept {
  return segment.marker == jpeg_marker::endOfImage || segment.marker == jpeg_marker::startOfScan;
}

/// Empty when the segment holds no Exif block.
ByteView exifBlockIn(const JpegSegment& segment, ByteView payload) noexcept {
  const std::size_t name = segment.marker == jpeg_marker::app1 ? exifNameLength(payload) : 0;
  return name > 0 ? payload.subspan(name) : ByteView();
}

}  // namespace

bool beginsLikeJpeg(ByteView file) noexcept { return beginsWith(file, "\xFF\xD8\xFF"); }

PhotoProperties readJpegProperties(ByteView file) noexcept {
  PhotoProperties frame;
  std::optional<ExifValues> exif;
  JpegWalker walker(file);
  while (const auto segment = walker.next()) {
    if (endsHeaders(*segment)) break;
    const ByteView payload = segment->in(file);
    if (segment->isFrameHeader()) takeFrameSize(frame, payload);
    const ByteView block = exif ? ByteView() : exifBlockIn(*segment, payload);
    if (!block.empty()) exif = readExif(block);
  }
  PhotoProperties properties = exif ? exif->properties : PhotoProperties();
  properties.pixelWidth = frame.pixelWidth;
  properties.pixelHeight = frame.pixelHeight;
  if (exif) takeNumber(properties.pixelWidth, exif->pixelXDimension);
  if (exif) takeNumber(properties.pixelHeight, exif->pixelYDimension);
  return properties;
}

ByteView jpegExifBlock(ByteView file) noexcept {
  JpegWalker walker(file);
  while (const auto segment = walker.next()) {
    if (endsHeaders(*segment)) break;
    const ByteView block = exifBlockIn(*segment, segment->in(file));
    if (!block.empty()) return block;
  }
  return {};
}

}  // namespace kestrova::imaging
