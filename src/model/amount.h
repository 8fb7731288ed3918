#pragma once

#include <cstdint>

namespace kestrova {

/// A number of files and their total size.
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
