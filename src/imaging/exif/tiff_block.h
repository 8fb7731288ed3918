#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace kestrova::imaging {

/// A TIFF 6.0 structure in memory (an Exif block, a multi-picture index) that can be read and patched in
/// place. It may hold anything: what lies outside it is neither read nor written.
class TiffBlock {
 public:
  using Offset = std::uint32_t;

  /// Nothing unless the bytes begin with a TIFF header.
  static std::optional<TiffBlock> open(std::span<std::uint8_t> bytes);

  /// One entry of a directory, by where it stands.
  struct Entry {
    Offset offset = 0;
    std::uint16_t tag = 0;
    std::uint16_t type = 0;
    std::uint32_t count = 0;
  };

  Offset firstDirectory() const { return number32(4); }
  /// The directory that follows this one; 0 when there is none.
  Offset nextDirectory(Offset directory) const;
  void setNextDirectory(Offset directory, Offset next);
  std::optional<Entry> find(Offset directory, std::uint16_t tag) const;

  /// The value of an entry that holds exactly one BYTE, SHORT or LONG.
  std::optional<std::uint32_t> value(const Entry& entry) const;
  std::optional<std::uint32_t> value(Offset directory, std::uint16_t tag) const;
  /// Overwrites it; does nothing to entries of another kind, or when the value does not fit.
  void setValue(Offset directory, std::uint16_t tag, std::uint32_t value);

  /// Exchanges the values of two entries of one kind; does nothing to others.
  void exchangeValues(Offset directory, std::uint16_t oneTag, std::uint16_t otherTag);

  bool contains(std::uint64_t offset, std::uint64_t length) const;
  /// The bytes from there, which have to be contained.
  std::span<std::uint8_t> bytes(std::size_t offset, std::size_t length) const {
    return bytes_.subspan(offset, length);
  }

  /// Numbers in the block's byte order; 0 where they are not contained.
  std::uint16_t number16(std::size_t offset) const;
  std::uint32_t number32(std::size_t offset) const;
  void setNumber16(std::size_t offset, std::uint16_t number);
  void setNumber32(std::size_t offset, std::uint32_t number);

 private:
  TiffBlock(std::span<std::uint8_t> bytes, bool bigEndian) : bytes_(bytes), bigEndian_(bigEndian) {}

  std::span<std::uint8_t> bytes_;
  bool bigEndian_;
};

}  // namespace kestrova::imaging
