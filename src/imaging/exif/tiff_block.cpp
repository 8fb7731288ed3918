#include "imaging/exif/tiff_block.h"

#include <algorithm>

namespace kestrova::imaging {

namespace {

constexpr std::size_t entryBytes = 12;

enum Type : std::uint16_t { byteType = 1, shortType = 3, longType = 4 };

}  // namespace

std::optional<TiffBlock> TiffBlock::open(std::span<std::uint8_t> bytes) {
  if (bytes.size() < 8) return std::nullopt;
  const bool bigEndian = bytes[0] == 'M' && bytes[1] == 'M';
  if (!bigEndian && !(bytes[0] == 'I' && bytes[1] == 'I')) return std::nullopt;
  TiffBlock block(bytes.first(std::min<std::size_t>(bytes.size(), UINT32_MAX)), bigEndian);
  if (block.number16(2) != 42) return std::nullopt;
  return block;
}

bool TiffBlock::contains(std::uint64_t offset, std::uint64_t length) const {
  return offset <= bytes_.size() && length <= bytes_.size() - offset;
}

std::uint16_t TiffBlock::number16(std::size_t offset) const {
  if (!contains(offset, 2)) return 0;
  const int first = bytes_[offset];
  const int second = bytes_[offset + 1];
  return static_cast<std::uint16_t>(bigEndian_ ? first << 8 | second : second << 8 | first);
}

std::uint32_t TiffBlock::number32(std::size_t offset) const {
  if (!contains(offset, 4)) return 0;
  const std::uint32_t first = number16(offset);
  const std::uint32_t second = number16(offset + 2);
  return bigEndian_ ? first << 16 | second : second << 16 | first;
}

void TiffBlock::setNumber16(std::size_t offset, std::uint16_t number) {
  if (!contains(offset, 2)) return;
  bytes_[offset + (bigEndian_ ? 1 : 0)] = static_cast<std::uint8_t>(number & 0xFF);
  bytes_[offset + (bigEndian_ ? 0 : 1)] = static_cast<std::uint8_t>(number >> 8);
}

void TiffBlock::setNumber32(std::size_t offset, std::uint32_t number) {
  if (!contains(offset, 4)) return;
  setNumber16(offset + (bigEndian_ ? 2 : 0), static_cast<std::uint16_t>(number & 0xFFFF));
  setNumber16(offset + (bigEndian_ ? 0 : 2), static_cast<std::uint16_t>(number >> 16));
}

TiffBlock::Offset TiffBlock::nextDirectory(Offset directory) const {
  return directory == 0 ? 0 : number32(std::size_t{directory} + 2 + entryBytes * number16(directory));
}

void TiffBlock::setNextDirectory(Offset directory, Offset next) {
  if (directory != 0) setNumber32(std::size_t{directory} + 2 + entryBytes * number16(directory), next);
}

std::optional<TiffBlock::Entry> TiffBlock::find(Offset directory, std::uint16_t tag) const {
  if (directory < 8) return std::nullopt;
  const int count = number16(directory);
  for (int i = 0; i < count; ++i) {
    const std::size_t offset = std::size_t{directory} + 2 + entryBytes * static_cast<std::size_t>(i);
    if (!contains(offset, entryBytes)) break;
    if (number16(offset) == tag) {
      return Entry{static_cast<Offset>(offset), tag, number16(offset + 2), number32(offset + 4)};
    }
  }
  return std::nullopt;
}

std::optional<std::uint32_t> TiffBlock::value(const Entry& entry) const {
  if (entry.count != 1) return std::nullopt;
  switch (entry.type) {
    case byteType:
      return bytes_[entry.offset + 8];
    case shortType:
      return number16(entry.offset + 8);
    case longType:
      return number32(entry.offset + 8);
    default:
      return std::nullopt;
  }
}

std::optional<std::uint32_t> TiffBlock::value(Offset directory, std::uint16_t tag) const {
  const auto entry = find(directory, tag);
  return entry ? value(*entry) : std::nullopt;
}

void TiffBlock::setValue(Offset directory, std::uint16_t tag, std::uint32_t value) {
  const auto entry = find(directory, tag);
  if (!entry || entry->count != 1) return;
  if (entry->type == byteType && value <= 0xFF) bytes_[entry->offset + 8] = static_cast<std::uint8_t>(value);
  if (entry->type == shortType && value <= 0xFFFF)
    setNumber16(entry->offset + 8, static_cast<std::uint16_t>(value));
  if (entry->type == longType) setNumber32(entry->offset + 8, value);
}

void TiffBlock::exchangeValues(Offset directory, std::uint16_t oneTag, std::uint16_t otherTag) {
  const auto one = find(directory, oneTag);
  const auto other = find(directory, otherTag);
  if (!one || !other || one->type != other->type || one->count != other->count) return;
  const std::uint32_t value = number32(one->offset + 8);
  setNumber32(one->offset + 8, number32(other->offset + 8));
  setNumber32(other->offset + 8, value);
}

}  // namespace kestrova::imaging
