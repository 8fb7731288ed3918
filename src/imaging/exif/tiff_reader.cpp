#include "imaging/exif/tiff_reader.h"

#include "imaging/exif/tiff_tags.h"

#include <algorithm>
#include <concepts>
#include <limits>
#include <type_traits>

namespace kestrova::imaging {
namespace {

constexpr std::uint16_t tiffMagic = 42;
constexpr std::uint16_t bigTiffMagic = 43;
// Cameras' raw files that are TIFF except for this number.
constexpr std::uint16_t panasonicMagic = 0x55;
constexpr std::uint16_t olympusMagic = 0x4F52;
constexpr std::uint16_t olympusOldMagic = 0x5352;

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
  switch (TiffType{entry.type}) {
    case TiffType::byte:
      return reader_.at<std::uint8_t>(at);
    case TiffType::short16:
      return reader_.at<std::uint16_t>(at);
    case TiffType::long32:
    case TiffType::directory:
      return reader_.at<std::uint32_t>(at);
    case TiffType::signedByte:
      return signedAt<std::int8_t>(reader_, at);
    case TiffType::signedShort:
      return signedAt<std::int16_t>(reader_, at);
    case TiffType::signedLong:
      return signedAt<std::int32_t>(reader_, at);
    case TiffType::long64:
    case TiffType::signedLong64:  // a negative one is too large for either
    case TiffType::directory64:
      return isBig_ ? asInteger(reader_.at<std::uint64_t>(at)) : std::nullopt;
    default:
      return std::nullopt;
  }
}

ByteView TiffReader::text(const Entry& entry, std::uint64_t longest) const noexcept {
  if (TiffType{entry.type} != TiffType::ascii) return {};
  const bool isInline = entry.count <= wordSize();
  const std::optional<std::uint64_t> at = isInline ? entry.valueField : wordAt(entry.valueField);
  return at ? reader_.view(*at, std::min(entry.count, longest)) : ByteView();
}

std::optional<std::uint64_t> TiffReader::entryCount(std::uint64_t directory) const noexcept {
  const std::uint64_t header = 2 * wordSize();
  if (directory < header) return std::nullopt;
  if (isBig_) return reader_.at<std::uint64_t>(directory);
  return reader_.at<std::uint16_t>(directory);
}

std::optional<std::uint64_t> TiffReader::nextDirectoryField(std::uint64_t directory) const noexcept {
  const std::optional<std::uint64_t> count = entryCount(directory);
  if (!count || *count > reader_.size() / entrySize()) return std::nullopt;
  const std::uint64_t field = directory + countSize() + *count * entrySize();
  return wordAt(field) ? std::optional(field) : std::nullopt;
}

std::uint64_t TiffReader::nextDirectory(std::uint64_t directory) const noexcept {
  const std::optional<std::uint64_t> field = nextDirectoryField(directory);
  return field ? wordAt(*field).value_or(0) : 0;
}

std::optional<TiffReader::Entry> TiffReader::find(std::uint64_t directory, std::uint16_t tag) const noexcept {
  std::optional<Entry> found;
  visitEntries(directory, [&](const Entry& entry) {
    if (!found && entry.tag == tag) found = entry;
  });
  return found;
}

std::optional<std::int64_t> TiffReader::integer(std::uint64_t directory, std::uint16_t tag) const noexcept {
  const std::optional<Entry> entry = find(directory, tag);
  return entry ? integer(*entry) : std::nullopt;
}

std::optional<std::uint64_t> TiffReader::wordAt(std::uint64_t position) const noexcept {
  if (isBig_) return reader_.at<std::uint64_t>(position);
  return reader_.at<std::uint32_t>(position);
}

std::optional<TiffReader::Entry> TiffReader::entryAt(std::uint64_t position) const noexcept {
  const std::uint64_t typeField = position + 2;
  const std::uint64_t countField = position + 4;
  const std::uint64_t valueField = countField + wordSize();
  if (!wordAt(valueField)) return std::nullopt;
  return Entry{.tag = *reader_.at<std::uint16_t>(position),
               .type = *reader_.at<std::uint16_t>(typeField),
               .count = *wordAt(countField),
               .typeField = typeField,
               .valueField = valueField};
}

}  // namespace kestrova::imaging
