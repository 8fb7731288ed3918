#include "support/tiff_writer.h"

#include <algorithm>

namespace kestrova::test {
namespace {

using Directory = std::vector<TiffEntry>;

constexpr std::uint16_t stripOffsets = 0x0111;
constexpr std::uint16_t stripByteCounts = 0x0117;
constexpr std::uint16_t thumbnailOffset = 0x0201;
constexpr std::uint16_t thumbnailLength = 0x0202;
constexpr std::uint16_t exifDirectory = 0x8769;

std::size_t width(TiffType type) {
  switch (type) {
    case TiffType::shortInt:
    case TiffType::signedShort:
      return 2;
    case TiffType::longInt:
    case TiffType::signedLong:
    case TiffType::directory:
      return 4;
    case TiffType::long8:
    case TiffType::signedLong8:
    case TiffType::directory8:
      return 8;
    default:
      return 1;
  }
}

class Encoder {
 public:
  Encoder(bool bigEndian, bool bigTiff) : bigEndian_(bigEndian), bigTiff_(bigTiff) {}

  std::size_t headerSize() const { return bigTiff_ ? 16 : 8; }
  std::size_t sizeOf(const Directory& directory) const {
    std::size_t size = tableSize(directory);
    for (const TiffEntry& entry : directory) size += paddedSizeOutside(entry);
    return size;
  }

  void number(std::uint64_t value, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) {
      out_.push_back(static_cast<std::uint8_t>(value >> 8 * (bigEndian_ ? bytes - 1 - i : i)));
    }
  }

  void header() {
    out_.assign(2, bigEndian_ ? 'M' : 'I');
    number(bigTiff_ ? 43 : 42, 2);
    if (bigTiff_) number(8, 2), number(0, 2);
    number(headerSize(), word());
  }

  void directory(const Directory& entries, std::size_t next) {
    std::size_t outside = out_.size() + tableSize(entries);
    number(entries.size(), bigTiff_ ? 8 : 2);
    for (const TiffEntry& entry : entries) {
      number(entry.tag, 2);
      number(static_cast<std::uint16_t>(entry.type), 2);
      number(entry.values.size(), word());
      if (sizeOutside(entry) == 0) {
        values(entry, word());
      } else {
        number(outside, word());
        outside += paddedSizeOutside(entry);
      }
    }
    number(next, word());
    for (const TiffEntry& entry : entries) {
      if (sizeOutside(entry) > 0) values(entry, paddedSizeOutside(entry));
    }
  }

  void bytes(const Bytes& some) { out_.insert(out_.end(), some.begin(), some.end()); }
  Bytes take() { return std::move(out_); }

 private:
  std::size_t word() const { return bigTiff_ ? 8 : 4; }
  std::size_t tableSize(const Directory& directory) const {
    return bigTiff_ ? 8 + 20 * directory.size() + 8 : 2 + 12 * directory.size() + 4;
  }
  std::size_t sizeOutside(const TiffEntry& entry) const {
    const std::size_t size = entry.values.size() * width(entry.type);
    return size <= word() ? 0 : size;
  }
  std::size_t paddedSizeOutside(const TiffEntry& entry) const { return (sizeOutside(entry) + 1) / 2 * 2; }

  void values(const TiffEntry& entry, std::size_t paddedTo) {
    const std::size_t end = out_.size() + paddedTo;
    for (std::uint64_t value : entry.values) number(value, width(entry.type));
    out_.resize(end);
  }

  bool bigEndian_;
  bool bigTiff_;
  Bytes out_;
};

void setValue(Directory& directory, std::uint16_t tag, std::size_t value) {
  std::ranges::find(directory, tag, &TiffEntry::tag)->values = {value};
}

}  // namespace

TiffEntry tiffText(std::uint16_t tag, std::string_view text) {
  TiffEntry entry{tag, TiffType::ascii, {text.begin(), text.end()}};
  entry.values.push_back(0);
  return entry;
}

TiffEntry tiffShort(std::uint16_t tag, std::uint64_t value) {
  return {.tag = tag, .type = TiffType::shortInt, .values = {value}};
}

TiffEntry tiffLong(std::uint16_t tag, std::uint64_t value) {
  return {.tag = tag, .type = TiffType::longInt, .values = {value}};
}

TiffEntry tiffFiller(std::uint16_t tag, std::size_t bytes) {
  TiffEntry entry{tag, TiffType::undefined, {}};
  for (std::uint32_t i = 0; i < bytes; ++i) entry.values.push_back((i * 2654435761U) >> 24);
  return entry;
}

Bytes TiffBlock::encode() const {
  Directory first = image;
  Directory second;
  if (!pixels.empty())
    first.insert(first.end(), {tiffLong(stripOffsets, 0), tiffLong(stripByteCounts, pixels.size())});
  if (!exif.empty()) first.push_back(tiffLong(exifDirectory, 0));
  if (!thumbnail.empty())
    second = {tiffLong(thumbnailOffset, 0), tiffLong(thumbnailLength, thumbnail.size())};
  if (!pixels.empty()) std::ranges::stable_sort(first, {}, &TiffEntry::tag);

  Encoder encoder(bigEndian, bigTiff);
  const std::size_t exifAt = encoder.headerSize() + encoder.sizeOf(first);
  const std::size_t secondAt = exifAt + (exif.empty() ? 0 : encoder.sizeOf(exif));
  const std::size_t thumbnailAt = secondAt + (second.empty() ? 0 : encoder.sizeOf(second));
  if (!pixels.empty()) setValue(first, stripOffsets, thumbnailAt + thumbnail.size());
  if (!exif.empty()) setValue(first, exifDirectory, exifAt);
  if (!second.empty()) setValue(second, thumbnailOffset, thumbnailAt);

  encoder.header();
  encoder.directory(first, second.empty() ? 0 : secondAt);
  if (!exif.empty()) encoder.directory(exif, 0);
  if (!second.empty()) encoder.directory(second, 0);
  encoder.bytes(thumbnail);
  encoder.bytes(pixels);
  return encoder.take();
}

}  // namespace kestrova::test
