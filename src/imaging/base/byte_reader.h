#pragma once

#include "platform/bytes.h"

#include <algorithm>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace kestrova::imaging {

/// Reads numbers of either byte order at any position. A read beyond the end returns nothing; no position or
/// length is too large. Does not own the bytes.
class ByteReader {
 public:
  ByteReader(ByteView bytes, std::endian order) noexcept : bytes_(bytes), order_(order) {}

  std::uint64_t size() const noexcept { return bytes_.size(); }
  std::endian order() const noexcept { return order_; }

  template <std::unsigned_integral Number>
  std::optional<Number> at(std::uint64_t position) const noexcept {
    if (position > size() || size() - position < sizeof(Number)) return std::nullopt;
    const ByteView digits = bytes_.subspan(position, sizeof(Number));
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
      number = number << 8 | digits[order_ == std::endian::big ? i : sizeof(Number) - 1 - i];
    }
    return static_cast<Number>(number);
  }

  /// These bytes, or as many of them as there are.
  ByteView view(std::uint64_t position, std::uint64_t length) const noexcept {
    const std::uint64_t start = std::min(position, size());
    return bytes_.subspan(start, std::min(length, size() - start));
  }
  ByteView from(std::uint64_t position) const noexcept { return view(position, size()); }

 private:
  ByteView bytes_;
  std::endian order_;
};

}  // namespace kestrova::imaging
