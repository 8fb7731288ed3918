#include "imaging/xmp_patch.h"

#include <algorithm>
#include <string_view>

namespace kestrova::imaging {

namespace {

constexpr std::string_view property = "tiff:Orientation";

bool isBlank(std::uint8_t byte) { return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r'; }

/// Behind the name there is ="6" in an attribute and >6< in an element: one digit, and before it nothing but
/// signs.
void resetValue(std::span<std::uint8_t> rest) {
  const auto isSign = [](std::uint8_t byte) {
    return byte == '=' || byte == '"' || byte == '\'' || byte == '>' || isBlank(byte);
  };
  const auto digit = std::ranges::find_if_not(rest, isSign);
  if (digit == rest.begin() || digit == rest.end() || std::next(digit) == rest.end()) return;
  const std::uint8_t behind = *std::next(digit);
  const bool stands = behind == '"' || behind == '\'' || behind == '<' || isBlank(behind);
  if (stands && *digit >= '2' && *digit <= '8') *digit = '1';
}

}  // namespace

void resetXmpOrientation(std::span<std::uint8_t> packet) {
  for (auto rest = packet; !rest.empty();) {
    const auto found = std::ranges::search(rest, property, [](std::uint8_t byte, char letter) {
      return byte == static_cast<std::uint8_t>(letter);
    });
    if (found.empty()) return;
    rest = std::span(found.end(), rest.end());
    resetValue(rest);
  }
}

}  // namespace kestrova::imaging
