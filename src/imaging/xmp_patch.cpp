#include "imaging/xmp_patch.h"

#include <QByteArray>
#include <algorithm>
#include <string_view>
#include <vector>

namespace kestrova::imaging {

namespace {

constexpr std::string_view property = "tiff:Orientation";
constexpr std::string_view jpegStart = "/9j/";  ///< a JPEG's first three bytes in base64

bool isLetter(std::uint8_t byte, char letter) { return byte == static_cast<std::uint8_t>(letter); }

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

void resetOrientation(std::span<std::uint8_t> packet) {
  for (auto rest = packet; !rest.empty();) {
    const auto found = std::ranges::search(rest, property, isLetter);
    if (found.empty()) return;
    rest = std::span(found.end(), rest.end());
    resetValue(rest);
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
    const auto found = std::ranges::search(rest, jpegStart, isLetter);
    if (found.empty()) return;
    const auto digits = digitsFrom({found.begin(), rest.end()});
    turnPreview(digits, turn);
    rest = rest.subspan(static_cast<std::size_t>(digits.back() - rest.data()) + 1);
  }
}

}  // namespace

void editTurnedXmp(std::span<std::uint8_t> packet, const PreviewMaker& turnPreview) {
  resetOrientation(packet);
  turnPreviews(packet, turnPreview);
}

}  // namespace kestrova::imaging
