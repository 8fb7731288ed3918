#include "toolkit/embedded_thumbnail.h"

#include "imaging/tiff_block.h"
#include "toolkit/jpeg_segments.h"

namespace kestrova {

namespace {

constexpr std::uint16_t jpegInterchangeFormat = 0x0201;
constexpr std::uint16_t jpegInterchangeFormatLength = 0x0202;

}  // namespace

Bytes embeddedThumbnail(ByteView jpegFile) {
  const ByteView segment = exifBlock(jpegFile);
  Bytes exif(segment.begin(), segment.end());
  const auto block = imaging::TiffBlock::open(exif);
  if (!block) return {};
  const auto directory = block->nextDirectory(block->firstDirectory());
  const auto offset = block->value(directory, jpegInterchangeFormat);
  const auto length = block->value(directory, jpegInterchangeFormatLength);
  if (directory == 0 || !offset || !length || !block->contains(*offset, *length)) return {};
  const auto thumbnail = block->bytes(*offset, *length);
  return {thumbnail.begin(), thumbnail.end()};
}

}  // namespace kestrova
