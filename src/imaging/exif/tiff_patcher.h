#pragma once

#include "imaging/exif/tiff_reader.h"
#include "platform/bytes.h"

#include <bit>
#include <concepts>
#include <cstdint>
#include <optional>
#include <span>

namespace kestrova::imaging {

/// Changes a TIFF or BigTIFF block in place: everything that TiffReader reads can be set. The block may hold
/// anything: nothing outside it is written. Does not own its bytes.
class TiffPatcher {
 public:
  /// Nothing if the block does not begin like a TIFF file.
  static std::optional<TiffPatcher> open(std::span<std::uint8_t> block) noexcept;

  const TiffReader& reader() const noexcept { return reader_; }

  /// Sets every entry of this tag that holds one whole number. An entry whose type is too narrow for the new
  /// number becomes a LONG.
  void setInteger(std::uint64_t directory, std::uint16_t tag, std::uint32_t number);
  /// Exchanges the values of the first entries of two tags if they are of one kind.
  void exchangeValues(std::uint64_t directory, std::uint16_t oneTag, std::uint16_t otherTag);
  /// Cuts the chain after a directory.
  void endAfter(std::uint64_t directory);

  /// Writes a number in the block's byte order; does nothing if it would not fit into the block.
  template <std::unsigned_integral Number>
  void set(std::uint64_t position, Number number) noexcept {
    if (reader_.bytes().at<Number>(position)) write(position, sizeof number, number);
  }

 private:
  TiffPatcher(std::span<std::uint8_t> block, const TiffReader& reader) noexcept
      : block_(block), reader_(reader) {}

  void write(std::uint64_t position, std::size_t size, std::uint64_t number) noexcept;

  std::span<std::uint8_t> block_;
  TiffReader reader_;
};

}  // namespace kestrova::imaging
