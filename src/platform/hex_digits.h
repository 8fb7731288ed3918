#pragma once

#include "platform/bytes.h"

#include <string>

namespace kestrova {

/// Two lowercase hexadecimal digits a byte.
inline std::string hexDigits(ByteView bytes) {
  constexpr const char* digits = "0123456789abcdef";
  std::string text;
  text.reserve(2 * bytes.size());
  for (const std::uint8_t byte : bytes) {
    text += digits[byte >> 4];
    text += digits[byte & 0xF];
  }
  return text;
}

}  // namespace kestrova
