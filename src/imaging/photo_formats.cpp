#include "imaging/photo_formats.h"

#include "imaging/jpeg/jpeg_properties.h"
#include "imaging/jpeg/jpeg_rewrite.h"
#include "imaging/png/png_properties.h"
#include "imaging/png/png_rewrite.h"
#include "imaging/tiff/tiff_properties.h"
#include "imaging/tiff/tiff_rewrite.h"

#include <algorithm>
#include <array>

namespace kestrova::imaging {

namespace {

/// A TIFF file is its own Exif block.
ByteView wholeFile(ByteView file) noexcept { return file; }

constexpr std::array formats{
    PhotoFormat{ImageType::jpeg, beginsLikeJpeg, readJpegProperties, jpegExifBlock, jpegSize, rewriteJpeg},
    PhotoFormat{ImageType::png, beginsLikePng, readPngProperties, pngExifBlock, pngSize, rewritePng},
    PhotoFormat{ImageType::tiff, beginsLikeTiff, readTiffProperties, wholeFile, tiffSize, rewriteTiff},
};

}  // namespace

const PhotoFormat* formatOf(ByteView prefix) noexcept {
  const auto found =
      std::ranges::find_if(formats, [&](const PhotoFormat& format) { return format.isBeginning(prefix); });
  return found == formats.end() ? nullptr : &*found;
}

std::optional<ImageType> imageTypeOf(ByteView prefix) noexcept {
  const PhotoFormat* format = formatOf(prefix);
  if (format == nullptr) return std::nullopt;
  return format->type;
}

}  // namespace kestrova::imaging
