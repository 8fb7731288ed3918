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

/// Measures a file of one picture.
template <PixelSize (*sizeOf)(ByteView), PhotoProperties (*propertiesOf)(ByteView) noexcept>
ImageSize measureOne(ByteView file) {
  const PixelSize size = sizeOf(file);
  return {.stored = size, .page = size, .orientation = propertiesOf(file).orientation.value_or(1)};
}

/// Rewrites a file of one picture.
template <Bytes (*rewrite)(ByteView, const RewritePlan&, const MetadataEdit&)>
RewrittenPhoto rewriteOne(ByteView file, const RewritePlan& plan, const MetadataEdit& edit) {
  return {.bytes = rewrite(file, plan, edit)};
}

constexpr std::array formats{
    PhotoFormat{.type = ImageType::jpeg,
                .isBeginning = beginsLikeJpeg,
                .properties = readJpegProperties,
                .exifBlock = jpegExifBlock,
                .measure = measureOne<jpegSize, readJpegProperties>,
                .rewrite = rewriteOne<rewriteJpeg>},
    PhotoFormat{.type = ImageType::png,
                .isBeginning = beginsLikePng,
                .properties = readPngProperties,
                .exifBlock = pngExifBlock,
                .measure = measureOne<pngSize, readPngProperties>,
                .rewrite = rewriteOne<rewritePng>},
    PhotoFormat{.type = ImageType::tiff,
                .isBeginning = beginsLikeTiff,
                .properties = readTiffProperties,
                .exifBlock = wholeFile,
                .measure = measureTiff,
                .rewrite = rewriteTiff},
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
