#include "imaging/exif/xmp_patch.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kestrova::imaging {

namespace {

/// A property that gets another whole number, wherever it is.
struct Restatement {
  std::string_view property;
  std::int64_t number;
};

std::vector<Restatement> restatementsOf(const MetadataEdit& edit) {
  std::vector<Restatement> restatements;
  if (const auto& size = edit.exif.pixelSize) {
    restatements = {{"tiff:ImageWidth", size->width},
                    {"tiff:ImageLength", size->height},
                    {"exif:PixelXDimension", size->width},
                    {"exif:PixelYDimension", size->height}};
  }
  if (edit.turnPreview) restatements.push_back({"tiff:Orientation", 1});
  return restatements;
}

/// The digits that follow a property's name: after =" in an attribute, after > in an element. Empty when
/// something else follows.
std::string_view numberAfter(std::string_view packet, std::size_t nameEnd) {
  constexpr std::string_view beforeValue = "=\"'> \t\r\n";
  constexpr std::string_view afterValue = "\"'< \t\r\n";
  const std::size_t begin = packet.find_first_not_of(beforeValue, nameEnd);
  if (begin == nameEnd || begin == std::string_view::npos) return {};
  const std::size_t end = packet.find_first_not_of("0123456789", begin);
  if (end == begin || end == std::string_view::npos) return {};
  const bool isWhole = afterValue.find(packet[end]) != std::string_view::npos;
  return isWhole ? packet.substr(begin, end - begin) : std::string_view();
}

}  // namespace

void editXmp(Bytes& packet, const MetadataEdit& edit) {
  const std::vector<Restatement> restatements = restatementsOf(edit);
  const std::string_view text(reinterpret_cast<const char*>(packet.data()), packet.size());
  Bytes result;
  std::size_t copied = 0;
  constexpr std::size_t prefix = std::string_view("tiff").size();
  for (auto colon = text.find(':', prefix); colon != text.npos; colon = text.find(':', colon + 1)) {
    throwIfStopped(edit.stopped);
    const std::string_view name = text.substr(colon - prefix);
    const auto restatement = std::ranges::find_if(
        restatements, [&](const Restatement& each) { return name.starts_with(each.property); });
    if (restatement == restatements.end()) continue;
    const std::string_view old = numberAfter(text, colon - prefix + restatement->property.size());
    if (old.empty()) continue;
    const std::string number = std::to_string(restatement->number);
    const auto begin = static_cast<std::size_t>(old.data() - text.data());
    result.insert(result.end(), packet.data() + copied, packet.data() + begin);
    result.insert(result.end(), number.begin(), number.end());
    copied = begin + old.size();
  }
  if (copied == 0) return;
  result.insert(result.end(), packet.data() + copied, packet.data() + packet.size());
  packet = std::move(result);
}

}  // namespace kestrova::imaging
