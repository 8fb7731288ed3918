#include "imaging/exif/tiff_patcher.h"

#include "imaging/exif/tiff_tags.h"

#include <algorithm>

namespace kestrova::imaging {

namespace {

/// The bytes of a whole number of this type; 0 for any other type.
std::size_t widthOf(TiffType type) {
  switch (type) {
    case TiffType::byte:
    case TiffType::signedByte:
      return 1;
    case TiffType::short16:
    case TiffType::signedShort:
      return 2;
    case TiffType::long32:
    case TiffType::signedLong:
    case TiffType::directory:
      return 4;
    case TiffType::long64:
    case TiffType::signedLong64:
    case TiffType::directory64:
      return 8;
    default:
      return 0;
  }
}

bool isSigned(TiffType type) {
  return type == TiffType::signedByte || type == TiffType::signedShort || type == TiffType::signedLong;
}

bool fits(std::uint32_t number, TiffType type) {
  const std::size_t bits = 8 * widthOf(type) - (isSigned(type) ? 1 : 0);
  return bits >= 32 || number >> bits == 0;
}

}  // namespace

std::optional<TiffPatcher> TiffPatcher::open(std::span<std::uint8_t> block) noexcept {
  const auto reader = TiffReader::open(block);
  if (!reader) return std::nullopt;
  return TiffPatcher(block, *reader);
}

void TiffPatcher::setInteger(std::uint64_t directory, std::uint16_t tag, std::uint32_t number) {
  reader_.visitEntries(directory, [&](const TiffReader::Entry& entry) {
    if (entry.tag != tag || !reader_.integer(entry)) return;
    TiffType type{entry.type};
    if (!fits(number, type)) {
      type = TiffType::long32;
      set(entry.typeField, static_cast<std::uint16_t>(type));
    }
    write(entry.valueField, widthOf(type), number);
  });
}

void TiffPatcher::exchangeValues(std::uint64_t directory, std::uint16_t oneTag, std::uint16_t otherTag) {
  const auto one = reader_.find(directory, oneTag);
  const auto other = reader_.find(directory, otherTag);
  if (!one || !other || one->type != other->type || one->count != other->count) return;
  const auto field = block_.subspan(one->valueField, reader_.wordSize());
  std::ranges::swap_ranges(field, block_.subspan(other->valueField, reader_.wordSize()));
}

void TiffPatcher::endAfter(std::uint64_t directory) {
  if (const auto field = reader_.nextDirectoryField(directory)) write(*field, reader_.wordSize(), 0);
}

void TiffPatcher::write(std::uint64_t position, std::size_t size, std::uint64_t number) noexcept {
  for (std::size_t i = 0; i < size; ++i) {
    const std::size_t shift = 8 * (reader_.bytes().order() == std::endian::big ? size - 1 - i : i);
    block_[position + i] = static_cast<std::uint8_t>(number >> shift);
  }
}

}  // namespace kestrova::imaging
