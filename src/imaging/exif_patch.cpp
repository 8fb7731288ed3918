#include "imaging/exif_patch.h"

#include "imaging/tiff_block.h"

namespace kestrova::imaging {

namespace {

enum Tag : std::uint16_t {
  imageWidth = 0x0100,
  imageLength = 0x0101,
  orientation = 0x0112,
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

std::size_t madeOver(TiffBlock& block, TiffBlock::Offset directory, const PreviewMaker& make) {
  const auto offset = block.value(directory, previewOffset);
  const auto length = block.value(directory, previewLength);
  if (!offset || !length || !block.contains(*offset, *length)) return 0;
  const auto ownTurn = block.value(directory, orientation);
  if (ownTurn && ownTurn != block.value(block.firstDirectory(), orientation)) return 0;
  return make(block.bytes(*offset, *length));
}

}  // namespace

void patchExif(std::span<std::uint8_t> bytes, const ExifPatch& patch) {
  auto block = TiffBlock::open(bytes);
  if (!block) return;
  if (patch.pixelSize) patchSize(*block, *patch.pixelSize);
  if (patch.resetOrientation) block->setValue(block->firstDirectory(), orientation, 1);
}

void remakePreview(std::span<std::uint8_t> bytes, const PreviewMaker& make) {
  auto block = TiffBlock::open(bytes);
  if (!block) return;
  const auto directory = block->nextDirectory(block->firstDirectory());
  if (directory == 0) return;
  const std::size_t length = madeOver(*block, directory, make);
  if (length == 0) return block->setNextDirectory(block->firstDirectory(), 0);
  block->setValue(directory, previewLength, static_cast<std::uint32_t>(length));
  block->setValue(directory, orientation, 1);
}

}  // namespace kestrova::imaging
