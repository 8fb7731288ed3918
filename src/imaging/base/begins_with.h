#pragma once

#include "platform/bytes.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace kestrova::imaging {

/// Whether the bytes begin with this text, NULs in it included.
inline bool beginsWith(ByteView bytes, std::string_view text) noexcept {
  return bytes.size() >= text.size() &&
         std::equal(text.begin(), text.end(), bytes.begin(),
                    [](char c, std::uint8_t byte) { return static_cast<std::uint8_t>(c) == byte; });
}

}  // namespace kestrova::imaging
