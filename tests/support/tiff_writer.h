#pragma once

#include "platform/bytes.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace kestrova::test {

enum class TiffType : std::uint16_t {
  byte = 1,
  ascii = 2,
  shortInt = 3,
  longInt = 4,
  signedByte = 6,
  undefined = 7,
  signedShort = 8,
  signedLong = 9,
  directory = 13,
  long8 = 16,
  signedLong8 = 17,
  directory8 = 18
};

/// One directory entry; its values are written in the type's width and the block's byte order.
struct TiffEntry {
  std::uint16_t tag = 0;
  TiffType type = TiffType::shortInt;
  std::vector<std::uint64_t> values = {};
};

TiffEntry tiffText(std::uint16_t tag, std::string_view text);  ///< ASCII, with its closing NUL
TiffEntry tiffShort(std::uint16_t tag, std::uint64_t value);
TiffEntry tiffLong(std::uint16_t tag, std::uint64_t value);
TiffEntry tiffFiller(std::uint16_t tag, std::size_t bytes);  ///< UNDEFINED, noise

/// A TIFF 6.0 (or BigTIFF) block, as an Exif block or a whole file. The order in it is: header, `image` with
/// its values, `exif` with its values, the thumbnail's directory, the thumbnail, the pixels. Entries are kept
/// in the given order.
struct TiffBlock {
  bool bigEndian = false;
  bool bigTiff = false;
  std::vector<TiffEntry> image;
  std::vector<TiffEntry> exif;  ///< when not empty, `image` gets an entry that leads here
  Bytes thumbnail;              ///< a JPEG; when not empty, a second directory leads to it
  Bytes pixels;  ///< when not empty, one uncompressed strip; `image` gets the two entries for it

  Bytes encode() const;
};

}  // namespace kestrova::test
