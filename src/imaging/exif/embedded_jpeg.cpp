#include "imaging/exif/embedded_jpeg.h"

#include "imaging/jpeg/jpeg_outline.h"
#include "imaging/photo_properties.h"

#include <cstring>
#include <utility>

namespace kestrova::imaging {

namespace {

/// Hostile bytes may look like the beginning of a JPEG everywhere.
constexpr int mostAttempts = 100;

/// Whether a JPEG may go on with this marker: a frame, tables, a comment, an application segment.
bool isFirstMarker(std::uint8_t marker) {
  return (marker >= 0xC0 && marker <= 0xCF) || marker == 0xDB || marker == 0xDD ||
         (marker >= 0xE0 && marker <= 0xEF) || marker == 0xFE;
}

/// Where the next JPEG may begin, one byte before its 0xD8; the number of bytes without one.
std::size_t nextStart(std::span<const std::uint8_t> bytes, std::size_t from) {
  while (from + 4 <= bytes.size()) {
    const void* found = std::memchr(bytes.data() + from + 1, 0xD8, bytes.size() - from - 3);
    if (found == nullptr) break;
    const auto at = static_cast<std::size_t>(static_cast<const std::uint8_t*>(found) - bytes.data());
    if (bytes[at + 1] == 0xFF && isFirstMarker(bytes[at + 2])) return at - 1;
    from = at;
  }
  return bytes.size();
}

/// How many bytes the JPEG at the beginning takes up once it is made over or may stay; 0 when there is none.
std::size_t remakeFirst(std::span<std::uint8_t> bytes, const PreviewMaker& make) {
  const auto outline = outlineJpeg(bytes);
  if (!outline) return 0;
  return remakeJpeg(bytes.first(outline->imageEnd), make) ? outline->imageEnd : 0;
}

}  // namespace

bool remakeJpeg(std::span<std::uint8_t> jpeg, const PreviewMaker& make) {
  const auto properties = readPhotoProperties(jpeg);
  return (properties && properties->orientation) || make(jpeg) > 0;
}

void remakeEmbeddedJpegs(std::span<std::uint8_t> bytes, const PreviewMaker& make) {
  std::size_t at = 0;
  for (int i = 0; i < mostAttempts && (at = nextStart(bytes, at)) < bytes.size(); ++i) {
    const std::uint8_t first = std::exchange(bytes[at], std::uint8_t{0xFF});
    const std::size_t length = remakeFirst(bytes.subspan(at), make);
    bytes[at] = first;
    at += length > 0 ? length : 1;
  }
}

}  // namespace kestrova::imaging
