#pragma once

#include "platform/bytes.h"

#include <cstdint>
#include <string_view>

namespace kestrova::test {

/// A payload that begins with this name and continues with so many equal bytes.
inline Bytes named(std::string_view name, std::size_t size, std::uint8_t filler) {
  Bytes payload(name.begin(), name.end());
  payload.resize(name.size() + size, filler);
  return payload;
}

}  // namespace kestrova::test
