#include "imaging/exif/xmp_patch.h"

#include <QByteArray>
#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestrova::imaging {

namespace {

constexpr std::string_view jpegStart = "/9j/";  ///< a JPEG's first three bytes in base64

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

bool isDigit(std::uint8_t byte) {
  return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
         byte == '+' || byte == '/';
}

/// The digits of one stretch of base64 (RFC 4648), where they stand: white space, or references to it, may
/// break its lines.
std::vector<std::uint8_t*> digitsFrom(std::span<std::uint8_t> text) {
  std::vector<std::uint8_t*> digits;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '&') {
      while (i < text.size() && text[i] != ';') ++i;
    } else if (isDigit(text[i])) {
      digits.push_back(&text[i]);
    } else if (!isBlank(text[i])) {
      break;
    }
  }
  return digits;
}

void turnPreview(const std::vector<std::uint8_t*>& digits, const PreviewMaker& turn) {
  QByteArray text;
  for (const auto* digit : digits) text.append(static_cast<char>(*digit));
  QByteArray preview = QByteArray::fromBase64(text);
  remakeEmbeddedJpegs(
      {reinterpret_cast<std::uint8_t*>(preview.data()), static_cast<std::size_t>(preview.size())}, turn);
  const QByteArray turned = preview.toBase64(QByteArray::OmitTrailingEquals);
  const auto count = std::min(digits.size(), static_cast<std::size_t>(turned.size()));
  for (std::size_t i = 0; i < count; ++i)
    *digits[i] = static_cast<std::uint8_t>(turned[static_cast<qsizetype>(i)]);
}

void turnPreviews(std::span<std::uint8_t> packet, const PreviewMaker& turn) {
  for (auto rest = packet; !rest.empty();) {
    const auto found = std::search(rest.begin(), rest.end(), jpegStart.begin(), jpegStart.end(), isLetter);
    if (found == rest.end()) return;
    const auto digits = digitsFrom({found, rest.end()});
    turnPreview(digits, turn);
    rest = rest.subspan(static_cast<std::size_t>(digits.back() - rest.data()) + 1);
  }
}

}  // namespace

void editXmp(Bytes& packet, const MetadataEdit& edit) {
  if (const auto& size = edit.exif.pixelSize) {
    for (const auto* name : {"tiff:ImageWidth", "exif:PixelXDimension"}) setNumber(packet, name, size->width);
    for (const auto* name : {"tiff:ImageLength", "exif:PixelYDimension"})
      setNumber(packet, name, size->height);
  }
  if (!edit.turnPreview) return;
  setNumber(packet, "tiff:Orientation", 1);
  turnPreviews(packet, edit.turnPreview);
}

}  // namespace kestrova::imaging
