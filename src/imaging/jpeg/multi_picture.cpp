#include "imaging/jpeg/multi_picture.h"

#include "imaging/exif/tiff_patcher.h"

namespace kestrova::imaging {

namespace {

constexpr std::uint16_t pictureEntries = 0xB002;
constexpr std::size_t entryBytes = 16;
constexpr std::size_t sizeField = 4;
constexpr std::size_t offsetField = 8;

}  // namespace

std::optional<MultiPictureIndex> MultiPictureIndex::read(ByteView bytes, std::size_t base,
                                                         std::size_t imageEnd, std::size_t fileSize) {
  MultiPictureIndex index;
  const auto block = TiffReader::open(bytes);
  const auto entry = block ? block->find(block->firstDirectory(), pictureEntries) : std::nullopt;
  if (!entry) return index;
  const ByteReader& numbers = block->bytes();
  index.entries_ = numbers.at<std::uint32_t>(entry->valueField).value_or(0);
  const std::size_t count = entry->count / entryBytes;
  if (count < 1 || numbers.view(index.entries_, count * entryBytes).size() < count * entryBytes)
    return std::nullopt;
  for (std::size_t i = 1; i < count; ++i) {
    const std::size_t at = index.entries_ + i * entryBytes;
    const std::size_t offset = base + *numbers.at<std::uint32_t>(at + offsetField);
    const std::size_t length = *numbers.at<std::uint32_t>(at + sizeField);
    if (length == 0) continue;
    if (offset < imageEnd || offset > fileSize || length > fileSize - offset) return std::nullopt;
    index.index_.push_back(i);
    index.pictures_.push_back({offset, length});
  }
  return index;
}

void MultiPictureIndex::write(std::span<std::uint8_t> bytes, std::size_t base, std::size_t firstLength,
                              std::span<const FurtherPicture> pictures) const {
  auto block = TiffPatcher::open(bytes);
  if (!block || entries_ == 0) return;
  block->set(entries_ + sizeField, static_cast<std::uint32_t>(firstLength));
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    const std::size_t at = entries_ + index_[i] * entryBytes;
    block->set(at + sizeField, static_cast<std::uint32_t>(pictures[i].length));
    block->set(at + offsetField, static_cast<std::uint32_t>(pictures[i].offset - base));
  }
}

}  // namespace kestrova::imaging
