#include "imaging/png/png_properties.h"

#include "imaging/base/begins_with.h"
#include "imaging/base/byte_reader.h"
#include "imaging/exif/exif_block.h"
#include "imaging/exif/exif_values.h"
#include "imaging/png/png_chunks.h"

#include <bit>
#include <cstdint>
#include <optional>

namespace kestrova::imaging {

bool beginsLikePng(ByteView file) noexcept { return beginsWith(file, pngSignature); }

PhotoProperties readPngProperties(ByteView prefix) noexcept {
  constexpr std::int64_t largestSide = INT32_MAX;
  PhotoProperties header;
  std::optional<PhotoProperties> exif;
  visitPngChunks(prefix, [&](const PngChunk& chunk) {
    if (chunk.type == "IHDR") {
      const ByteReader reader(chunk.data, std::endian::big);
      takeNumber(header.pixelWidth, reader.at<std::uint32_t>(0), largestSide);
      takeNumber(header.pixelHeight, reader.at<std::uint32_t>(4), largestSide);
    } else if (chunk.type == "eXIf" && !exif) {
      exif = readExif(chunk.data.subspan(exifNameLength(chunk.data))).properties;
    }
  });
  PhotoProperties properties = exif.value_or(PhotoProperties());
  properties.pixelWidth = header.pixelWidth;
  properties.pixelHeight = header.pixelHeight;
  return properties;
}

ByteView pngExifBlock(ByteView file) noexcept {
  std::optional<ByteView> block;
  visitPngChunks(file, [&](const PngChunk& chunk) {
    if (chunk.type == "eXIf" && !block) block = chunk.data.subspan(exifNameLength(chunk.data));
  });
  return block.value_or(ByteView());
}

}  // namespace kestrova::imaging
