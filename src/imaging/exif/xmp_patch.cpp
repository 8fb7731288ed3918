#include "imaging/exif/xmp_patch.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kestrova::imaging {

namespace {

bool isLetter(std::uint8_t byte, char letter) { return byte == static_cast<std::uint8_t>(letter); }

bool isBlank(std::uint8_t byte) { return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r'; }

/// What stands between a name and its value: =" in an attribute, > in an element.
bool isSign(std::uint8_t byte) {
  return byte == '=' || byte == '"' || byte == '\'' || byte == '>' || isBlank(byte);
}

bool endsValue(std::uint8_t byte) { return byte == '"' || byte == '\'' || byte == '<' || isBlank(byte); }

/// Gives a property of a whole number another value, wherever it stands.
void setNumber(Bytes& packet, std::string_view property, std::int64_t number) {
  const std::string text = std::to_string(number);
  for (std::size_t position = 0;;) {
    const auto rest = std::span(packet).subspan(position);
    const auto found = std::search(rest.begin(), rest.end(), property.begin(), property.end(), isLetter);
    if (found == rest.end()) return;
    const auto foundEnd = found + static_cast<std::ptrdiff_t>(property.size());
    const auto begin = std::find_if_not(foundEnd, rest.end(), isSign);
    const auto end = std::find_if(begin, rest.end(), [](auto byte) { return byte < '0' || byte > '9'; });
    position = static_cast<std::size_t>(foundEnd - rest.begin()) + position;
    if (begin == foundEnd || begin == end || end == rest.end() || !endsValue(*end)) continue;
    const auto first = packet.begin() + (&*begin - packet.data());
    packet.insert(packet.erase(first, first + (end - begin)), text.begin(), text.end());
  }
}

}  // namespace

void editXmp(Bytes& packet, const MetadataEdit& edit) {
  if (const auto& size = edit.exif.pixelSize) {
    for (const auto* name : {"tiff:ImageWidth", "exif:PixelXDimension"}) setNumber(packet, name, size->width);
    for (const auto* name : {"tiff:ImageLength", "exif:PixelYDimension"})
      setNumber(packet, name, size->height);
  }
  if (edit.turnPreview) setNumber(packet, "tiff:Orientation", 1);
}

}  // namespace kestrova::imaging
