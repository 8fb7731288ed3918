#include "imaging/exif/exif_patch.h"

#include "imaging/exif/tiff_block.h"

namespace kestrova::imaging {

namespace {

enum Tag : std::uint16_t {
  imageWidth = 0x0100,
  imageLength = 0x0101,
  orientation = 0x0112,
  xResolution = 0x011A,
  yResolution = 0x011B,
  previewOffset = 0x0201,
  previewLength = 0x0202,
  exifDirectory = 0x8769,
  pixelXDimension = 0xA002,
  pixelYDimension = 0xA003,
};

void patchSize(TiffBlock& block, const PixelSize& size) {
  const auto width = static_cast<std::uint32_t>(size.width);
  const auto height = static_cast<std::uint32_t>(size.height);
  block.setValue(block.firstDirectory(), imageWidth, width);
  block.setValue(block.firstDirectory(), imageLength, height);
  const auto exif = block.value(block.firstDirectory(), exifDirectory);
  if (!exif) return;
  block.setValue(*exif, pixelXDimension, width);
  block.setValue(*exif, pixelYDimension, height);
}

std::span<std::uint8_t> previewOf(const TiffBlock& block, TiffBlock::Offset directory) {
  if (directory == 0) return {};
  const auto offset = block.value(directory, previewOffset);
  const auto length = block.value(directory, previewLength);
  if (!offset || !length || !block.contains(*offset, *length)) return {};
  return block.bytes(*offset, *length);
}

}  // namespace

void patchExif(std::span<std::uint8_t> bytes, const ExifPatch& patch) {
  auto block = TiffBlock::open(bytes);
  if (!block) return;
  if (patch.pixelSize) patchSize(*block, *patch.pixelSize);
  if (patch.resetOrientation) block->setValue(block->firstDirectory(), orientation, 1);
  if (patch.exchangesAxes) block->exchangeValues(block->firstDirectory(), xResolution, yResolution);
}

std::span<std::uint8_t> exifPreview(std::span<std::uint8_t> bytes) {
  const auto block = TiffBlock::open(bytes);
  return block ? previewOf(*block, block->nextDirectory(block->firstDirectory())) : std::span<std::uint8_t>();
}

void turnExifPreview(std::span<std::uint8_t> bytes, const PreviewTurner& turn) {
  auto block = TiffBlock::open(bytes);
  if (!block) return;
  const auto photo = block->firstDirectory();
  const auto directory = block->nextDirectory(photo);
  if (directory == 0) return;
  const auto preview = previewOf(*block, directory);
  const auto ownOrientation = block->value(directory, orientation);
  const bool isTurnedAlike = !ownOrientation || ownOrientation == block->value(photo, orientation);
  const std::size_t length = isTurnedAlike && !preview.empty() ? turn(preview) : 0;
  if (length == 0) {
    block->setNextDirectory(photo, 0);
    return;
  }
  block->setValue(directory, previewLength, static_cast<std::uint32_t>(length));
  block->setValue(directory, orientation, 1);
}

void editExif(std::span<std::uint8_t> block, const MetadataEdit& edit) {
  if (edit.turnPreview) turnExifPreview(block, edit.turnPreview);
  patchExif(block, edit.exif);
}

}  // namespace kestrova::imaging
