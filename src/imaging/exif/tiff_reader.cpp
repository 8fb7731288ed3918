#include "imaging/exif/tiff_reader.h"

#include <algorithm>
#include <concepts>
#include <limits>
#include <type_traits>

namespace kestrova::imaging {
namespace {

constexpr std::uint16_t tiffMagic = 42;
constexpr std::uint16_t bigTiffMagic = 43;
// Cameras' raw files that are TIFF in all but this number.
constexpr std::uint16_t panasonicMagic = 0x55;
constexpr std::uint16_t olympusMagic = 0x4F52;
constexpr std::uint16_t olympusOldMagic = 0x5352;

enum FieldType : std::uint16_t {
  byteType = 1,
  asciiType = 2,
  shortType = 3,
  longType = 4,
  signedByteType = 6,
  signedShortType = 8,
  signedLongType = 9,
  directoryType = 13,
  long8Type = 16,
  signedLong8Type = 17,
  directory8Type = 18,
};

std::optional<std::endian> byteOrderOf(ByteView block) noexcept {
  if (block.size() < 2 || block[0] != block[1]) return std::nullopt;
  if (block[0] == 'I') return std::endian::little;
  if (block[0] == 'M') return std::endian::big;
  return std::nullopt;
}

bool isClassicMagic(std::uint16_t magic) noexcept {
  return magic == tiffMagic || magic == panasonicMagic || magic == olympusMagic || magic == olympusOldMagic;
}

std::optional<std::int64_t> asInteger(std::optional<std::uint64_t> number) noexcept {
  if (!number || *number > std::uint64_t{std::numeric_limits<std::int64_t>::max()}) return std::nullopt;
  return static_cast<std::int64_t>(*number);
}

template <std::signed_integral Signed>
std::optional<std::int64_t> signedAt(const ByteReader& reader, std::uint64_t position) noexcept {
  const auto number = reader.at<std::make_unsigned_t<Signed>>(position);
  if (!number) return std::nullopt;
  return static_cast<Signed>(*number);
}

}  // namespace

std::optional<TiffReader> TiffReader::open(ByteView block) noexcept {
  constexpr std::uint64_t firstOffset = 4;
  constexpr std::uint64_t bigFirstOffset = 8;
  const std::optional<std::endian> order = byteOrderOf(block);
  if (!order) return std::nullopt;
  const ByteReader reader(block, *order);
  const std::optional<std::uint16_t> magic = reader.at<std::uint16_t>(2);
  if (!magic || (!isClassicMagic(*magic) && *magic != bigTiffMagic)) return std::nullopt;

  TiffReader tiff(reader, *magic == bigTiffMagic);
  const std::optional<std::uint64_t> first = tiff.wordAt(tiff.isBig_ ? bigFirstOffset : firstOffset);
  tiff.firstDirectory_ = first.value_or(0);
  return tiff;
}

std::optional<std::int64_t> TiffReader::integer(const Entry& entry) const noexcept {
  const std::uint64_t at = entry.valueField;
  if (entry.count != 1) return std::nullopt;
  switch (entry.type) {
    case byteType:
      return reader_.at<std::uint8_t>(at);
    case shortType:
      return reader_.at<std::uint16_t>(at);
    case longType:
    case directoryType:
      return reader_.at<std::uint32_t>(at);
    case signedByteType:
      return signedAt<std::int8_t>(reader_, at);
    case signedShortType:
      return signedAt<std::int16_t>(reader_, at);
    case signedLongType:
      return signedAt<std::int32_t>(reader_, at);
    case long8Type:
    case signedLong8Type:  // a negative one is too large for either
    case directory8Type:
      return isBig_ ? asInteger(reader_.at<std::uint64_t>(at)) : std::nullopt;
    default:
      return std::nullopt;
  }
}

ByteView TiffReader::text(const Entry& entry, std::uint64_t longest) const noexcept {
  if (entry.type != asciiType) return {};
  const bool isInline = entry.count <= wordSize();
  const std::optional<std::uint64_t> at = isInline ? entry.valueField : wordAt(entry.valueField);
  return at ? reader_.view(*at, std::min(entry.count, longest)) : ByteView();
}

/// None for a directory that would lie in the header or past the end.
std::uint64_t TiffReader::entryCount(std::uint64_t directory) const noexcept {
  const std::uint64_t header = 2 * wordSize();
  if (directory < header) return 0;
  return isBig_ ? reader_.at<std::uint64_t>(directory).value_or(0)
                : reader_.at<std::uint16_t>(directory).value_or(0);
}

std::optional<std::uint64_t> TiffReader::wordAt(std::uint64_t position) const noexcept {
  if (isBig_) return reader_.at<std::uint64_t>(position);
  return reader_.at<std::uint32_t>(position);
}

std::optional<TiffReader::Entry> TiffReader::entryAt(std::uint64_t position) const noexcept {
  constexpr std::uint64_t typeAt = 2;
  constexpr std::uint64_t countAt = 4;
  const std::uint64_t valueField = position + countAt + wordSize();
  if (!wordAt(valueField)) return std::nullopt;
  return Entry{*reader_.at<std::uint16_t>(position), *reader_.at<std::uint16_t>(position + typeAt),
               *wordAt(position + countAt), valueField};
}

}  // namespace kestrova::imaging
