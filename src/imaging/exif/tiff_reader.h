#pragma once

#include "imaging/base/byte_reader.h"

#include <cstdint>
#include <optional>

namespace kestrova::imaging {

/// The directories of a TIFF 6.0 or BigTIFF block: a whole file, or the contents of an Exif segment. The
/// block may be cut off anywhere and hold anything. Does not own its bytes.
class TiffReader {
 public:
  struct Entry {
    std::uint16_t tag = 0;
    std::uint16_t type = 0;
    std::uint64_t count = 0;
    std::uint64_t typeField = 0;   ///< where the type is
    std::uint64_t valueField = 0;  ///< where the value is, or its offset if it is longer than the field
  };

  /// Nothing if the block does not begin like a TIFF file.
  static std::optional<TiffReader> open(ByteView block) noexcept;

  /// Numbers in the block's byte order, by their position in it.
  const ByteReader& bytes() const noexcept { return reader_; }
  /// The bytes of a count, an offset and a value field: 4, or 8 in BigTIFF.
  std::uint64_t wordSize() const noexcept { return isBig_ ? 8 : 4; }
  /// A number of that many bytes.
  std::optional<std::uint64_t> wordAt(std::uint64_t position) const noexcept;

  /// Where the directories are in the block; 0 if there is none.
  std::uint64_t firstDirectory() const noexcept { return firstDirectory_; }
  std::uint64_t nextDirectory(std::uint64_t directory) const noexcept;
  /// Where a directory holds the offset of the next one; nothing when that would lie outside the block.
  std::optional<std::uint64_t> nextDirectoryField(std::uint64_t directory) const noexcept;

  /// How many entries a directory says it has. Nothing for one that would lie in the header or past the end.
  std::optional<std::uint64_t> entryCount(std::uint64_t directory) const noexcept;
  /// Calls `visit` with every entry that is there as a whole, in order, at most as often as the directory
  /// says.
  template <typename Visit>
  void visitEntries(std::uint64_t directory, Visit visit) const {
    const std::uint64_t count = entryCount(directory).value_or(0);
    std::uint64_t position = directory + countSize();
    for (std::uint64_t i = 0; i < count; ++i, position += entrySize()) {
      const std::optional<Entry> entry = entryAt(position);
      if (!entry) return;
      visit(*entry);
    }
  }

  /// The first entry of this tag.
  std::optional<Entry> find(std::uint64_t directory, std::uint16_t tag) const noexcept;

  /// The entry's one whole number; nothing when it is of another type or does not fit its field.
  std::optional<std::int64_t> integer(const Entry& entry) const noexcept;
  /// The number of the first entry of this tag.
  std::optional<std::int64_t> integer(std::uint64_t directory, std::uint16_t tag) const noexcept;

  /// As much of an ASCII entry's text as there is, at most `longest` bytes, including a closing NUL. Empty
  /// for any other type.
  ByteView text(const Entry& entry, std::uint64_t longest) const noexcept;

 private:
  TiffReader(ByteReader reader, bool isBig) noexcept : reader_(reader), isBig_(isBig) {}

  std::uint64_t countSize() const noexcept { return isBig_ ? 8 : 2; }
  std::uint64_t entrySize() const noexcept { return isBig_ ? 20 : 12; }
  std::optional<Entry> entryAt(std::uint64_t position) const noexcept;

  ByteReader reader_;
  bool isBig_;
  std::uint64_t firstDirectory_ = 0;
};

}  // namespace kestrova::imaging
