#include "toolkit/embedded_thumbnail.h"

#include "toolkit/jpeg_segments.h"

#include <algorithm>
#include <bit>
#include <optional>

namespace kestrova {

namespace {

constexpr std::uint16_t jpegInterchangeFormat = 0x0201;
constexpr std::uint16_t jpegInterchangeFormatLength = 0x0202;
constexpr std::uint64_t entryBytes = 12;

/// Reads numbers of a TIFF block; beyond its end there are only zeros.
class Block {
 public:
  explicit Block(ByteView bytes) : bytes_(bytes), big_(!bytes.empty() && bytes[0] == 'M') {}

  std::uint32_t number(std::uint64_t position, std::uint64_t size) const {
    std::uint32_t value = 0;
    for (std::uint64_t i = 0; i < size; ++i) value = value << 8 | byte(position + (big_ ? i : size - 1 - i));
    return value;
  }

  std::uint32_t value(std::uint64_t directory, std::uint16_t tag) const {
    const std::uint32_t count = number(directory, 2);
    for (std::uint64_t entry = directory + 2, i = 0; i < count; ++i, entry += entryBytes) {
      if (number(entry, 2) == tag) return number(entry + 8, 4);
    }
    return 0;
  }

  std::uint32_t directoryAfter(std::uint64_t directory) const {
    return number(directory + 2 + number(directory, 2) * entryBytes, 4);
  }

 private:
  std::uint8_t byte(std::uint64_t position) const { return position < bytes_.size() ? bytes_[position] : 0; }

  ByteView bytes_;
  bool big_;
};

}  // namespace

ByteView embeddedThumbnail(ByteView jpegFile) {
  const ByteView exif = exifBlock(jpegFile);
  const Block block(exif);
  const std::uint32_t directory = block.directoryAfter(block.number(4, 4));
  if (directory == 0) return {};
  const std::uint64_t start = block.value(directory, jpegInterchangeFormat);
  const std::uint64_t length = block.value(directory, jpegInterchangeFormatLength);
  if (start == 0 || start > exif.size() || length > exif.size() - start) return {};
  return exif.subspan(start, length);
}

}  // namespace kestrova
