#include "imaging/jpeg/jpeg_outline.h"

#include <algorithm>
#include <cstring>

namespace kestrova::imaging {

namespace {

enum Marker : std::uint8_t {
  temporary = 0x01,
  firstRestart = 0xD0,
  lastRestart = 0xD7,
  startOfImage = 0xD8,
  endOfImage = 0xD9,
  startOfScan = 0xDA,
  firstApplication = 0xE0,
  lastApplication = 0xEF,
  comment = 0xFE,
};

bool isMetadata(std::uint8_t marker) {
  return (marker >= firstApplication && marker <= lastApplication) || marker == comment;
}

bool standsAlone(std::uint8_t marker) {
  return marker == temporary || (marker >= firstRestart && marker <= startOfImage);
}

/// The byte behind the next 0xFF that begins a marker (not a stuffed zero, not a fill byte); the file's size
/// without one.
std::size_t nextMarker(ByteView file, std::size_t position) {
  while (position < file.size()) {
    const void* found = std::memchr(file.data() + position, 0xFF, file.size() - position);
    if (found == nullptr) return file.size();
    position = static_cast<std::size_t>(static_cast<const std::uint8_t*>(found) - file.data()) + 1;
    if (position < file.size() && file[position] != 0x00 && file[position] != 0xFF) return position;
  }
  return file.size();
}

}  // namespace

std::optional<JpegOutline> outlineJpeg(ByteView file) {
  if (file.size() < 4 || file[0] != 0xFF || file[1] != startOfImage) return std::nullopt;
  JpegOutline outline;
  std::size_t position = 2;
  while ((position = nextMarker(file, position)) < file.size()) {
    const std::uint8_t marker = file[position++];
    if (marker == endOfImage) {
      outline.imageEnd = position;
      return outline;
    }
    if (standsAlone(marker)) continue;
    if (file.size() - position < 2) break;
    const std::size_t length = std::size_t{file[position]} << 8 | file[position + 1];
    if (length < 2 || length > file.size() - position) break;
    if (isMetadata(marker)) outline.metadata.push_back({marker, position + 2, length - 2});
    if (marker == startOfScan) ++outline.scans;
    position += length;
  }
  return std::nullopt;
}

bool isNamed(ByteView payload, std::string_view name) {
  return payload.size() >= name.size() &&
         std::equal(name.begin(), name.end(), payload.begin(), [](char expected, std::uint8_t byte) {
           return static_cast<std::uint8_t>(expected) == byte;
         });
}

void appendSegment(Bytes& file, std::uint8_t marker, ByteView payload) {
  const std::size_t length = payload.size() + 2;
  file.insert(file.end(), {0xFF, marker, static_cast<std::uint8_t>(length >> 8),
                           static_cast<std::uint8_t>(length & 0xFF)});
  file.insert(file.end(), payload.begin(), payload.end());
}

}  // namespace kestrova::imaging
