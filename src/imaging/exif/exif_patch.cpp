#include "imaging/exif/exif_patch.h"

#include "imaging/exif/exif_values.h"
#include "imaging/exif/tiff_patcher.h"
#include "imaging/exif/tiff_tags.h"

#include <iterator>

namespace kestrova::imaging {

namespace {

void patchSize(TiffPatcher& block, const PixelSize& size) {
  const auto width = static_cast<std::uint32_t>(size.width);
  const auto height = static_cast<std::uint32_t>(size.height);
  const std::uint64_t first = block.reader().firstDirectory();
  block.setInteger(first, tag::imageWidth, width);
  block.setInteger(first, tag::imageLength, height);
  const std::uint64_t exif = exifDirectoryOf(block.reader());
  block.setInteger(exif, tag::pixelXDimension, width);
  block.setInteger(exif, tag::pixelYDimension, height);
}

/// The directory of the preview; 0 when there is none.
std::uint64_t previewDirectory(const TiffReader& block) {
  return block.nextDirectory(block.firstDirectory());
}

}  // namespace

void patchExif(std::span<std::uint8_t> bytes, const ExifPatch& patch) {
  auto block = TiffPatcher::open(bytes);
  if (!block) return;
  const std::uint64_t first = block->reader().firstDirectory();
  if (patch.pixelSize) patchSize(*block, *patch.pixelSize);
  if (patch.resetOrientation) block->setInteger(first, tag::orientation, 1);
  if (patch.exchangesAxes) block->exchangeValues(first, tag::xResolution, tag::yResolution);
}

ByteView exifPreview(ByteView bytes) {
  const auto block = TiffReader::open(bytes);
  if (!block) return {};
  const std::uint64_t directory = previewDirectory(*block);
  const auto offset = block->integer(directory, tag::previewOffset).value_or(-1);
  const auto length = block->integer(directory, tag::previewLength).value_or(-1);
  const std::int64_t size = std::ssize(bytes);
  if (offset < 0 || length < 0 || offset > size || length > size - offset) return {};
  return bytes.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(length));
}

void turnExifPreview(std::span<std::uint8_t> bytes, const PreviewTurner& turn) {
  auto block = TiffPatcher::open(bytes);
  if (!block) return;
  const TiffReader& reader = block->reader();
  const std::uint64_t photo = reader.firstDirectory();
  const std::uint64_t directory = previewDirectory(reader);
  if (directory == 0) return;
  const ByteView found = exifPreview(bytes);
  const auto begin = found.empty() ? 0 : static_cast<std::size_t>(found.data() - bytes.data());
  const auto preview = bytes.subspan(begin, found.size());
  const auto ownOrientation = reader.integer(directory, tag::orientation);
  const bool isTurnedAlike = !ownOrientation || ownOrientation == reader.integer(photo, tag::orientation);
  const std::size_t length = isTurnedAlike && !preview.empty() ? turn(preview) : 0;
  if (length == 0) {
    block->endAfter(photo);
    return;
  }
  block->setInteger(directory, tag::previewLength, static_cast<std::uint32_t>(length));
  block->setInteger(directory, tag::orientation, 1);
}

void editExif(std::span<std::uint8_t> block, const MetadataEdit& edit) {
  if (edit.turnPreview) turnExifPreview(block, edit.turnPreview);
  patchExif(block, edit.exif);
}

}  // namespace kestrova::imaging
