#include "imaging/tiff/tiff_rewrite.h"

#include "imaging/base/image_error.h"
#include "imaging/tiff/tiff_encoder.h"
#include "imaging/tiff/tiff_metadata.h"
#include "imaging/tiff/tiff_pages.h"
#include "imaging/tiff/tiff_pixels.h"

#include <optional>

namespace kestrova::imaging {

namespace {

/// The file with its pixels unchanged. Its first page states its size.
Bytes patchedTiff(ByteView file, const TiffPages& pages, const MetadataEdit& edit) {
  verifyTiff(file, pages.largest().directory, edit.stopped);
  ExifPatch patch = edit.exif;
  patch.pixelSize = pages.first().size;
  Bytes result(file.begin(), file.end());
  patchExif(result, patch);
  return result;
}

/// The largest page as the plan wants it, with the metadata of the first, which are the photo's.
Bytes newTiff(ByteView file, const TiffPages& pages, const RewritePlan& plan, const MetadataEdit& edit) {
  const TiffPage& page = pages.largest();
  if (page.isReduced && page.hasSubDirectories)
    throw ImageError("the TIFF's pages are previews of a raw image");
  const Bytes pixels = encodeTiff(decodeTiff(file, page.directory, plan), file, page.directory, plan.stopped);
  throwIfStopped(plan.stopped);
  std::optional<std::int64_t> orientation;
  if (page.directory != pages.first().directory) orientation = pages.orientationOf(page);
  Bytes result = withMetadata(pixels, file, edit, orientation);
  patchExif(result, {.pixelSize = plan.result(), .resetOrientation = plan.resetOrientation});
  return result;
}

}  // namespace

ImageSize measureTiff(ByteView file) {
  const TiffPages pages(file);
  return {.stored = pages.largestSides(),
          .page = pages.largest().size,
          .orientation = pages.orientationOf(pages.largest())};
}

RewrittenPhoto rewriteTiff(ByteView file, const RewritePlan& plan, const MetadataEdit& edit) {
  const TiffPages pages(file);
  const bool turnsNone = !plan.resetOrientation || pages.areUpright();
  if (plan.keepsPixels() && turnsNone) return {.bytes = patchedTiff(file, pages, edit)};
  return {.bytes = newTiff(file, pages, plan, edit), .pagesLeftOut = pages.count() - 1};
}

}  // namespace kestrova::imaging
