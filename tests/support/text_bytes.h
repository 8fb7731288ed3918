#pragma once

#include "platform/bytes.h"

#include <cstdint>
#include <string>
#include <string_view>

// Text as bytes and bytes as text.

namespace kestrova::test {

/// Valid as long as the text is.
inline ByteView viewOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

inline std::string textOf(ByteView bytes) { return {bytes.begin(), bytes.end()}; }

}  // namespace kestrova::test
