#pragma once

#include <cstdint>

namespace kestrova {

/// So many files of so many bytes together.
struct Amount {
  std::int64_t files = 0;
  std::int64_t bytes = 0;

  Amount& operator+=(const Amount& other) {
    files += other.files;
    bytes += other.bytes;
    return *this;
  }
  bool operator==(const Amount&) const = default;
};

}  // namespace kestrova
