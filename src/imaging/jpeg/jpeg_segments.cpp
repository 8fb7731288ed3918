#include "imaging/jpeg/jpeg_segments.h"

#include <cstring>

namespace kestrova::imaging {

namespace {

using namespace jpeg_marker;

bool standsAlone(std::uint8_t marker) {
  return marker == temporary || (marker >= firstRestart && marker <= endOfImage);
}

/// The byte after the next 0xFF that begins a marker; the file's size when there is none.
std::size_t nextMarker(ByteView file, std::size_t position) {
  while (position < file.size()) {
    const void* found = std::memchr(file.data() + position, fill, file.size() - position);
    if (found == nullptr) break;
    position = static_cast<std::size_t>(static_cast<const std::uint8_t*>(found) - file.data()) + 1;
    if (position < file.size() && file[position] != stuffing && file[position] != fill) return position;
  }
  return file.size();
}

}  // namespace

bool JpegSegment::isFrameHeader() const noexcept {
  return marker >= firstFrame && marker <= lastFrame && marker != huffmanTables && marker != extension &&
         marker != arithmeticTables;
}

std::optional<JpegSegment> JpegWalker::next() noexcept {
  constexpr std::size_t lengthField = 2;
  const std::size_t at = nextMarker(file_, position_);
  if (at >= file_.size()) return std::nullopt;
  JpegSegment segment{.marker = file_[at], .offset = at + 1, .length = 0};
  if (!standsAlone(segment.marker) && file_.size() - segment.offset >= lengthField) {
    const std::size_t stated = std::size_t{file_[at + 1]} << 8 | file_[at + 2];
    if (stated >= lengthField) {
      segment.offset += lengthField;
      segment.length = stated - lengthField;
    }
  }
  position_ = segment.offset + segment.length;
  return segment;
}

void appendSegment(Bytes& file, std::uint8_t marker, ByteView payload) {
  const std::size_t length = payload.size() + 2;
  file.insert(file.end(), {fill, marker, static_cast<std::uint8_t>(length >> 8),
                           static_cast<std::uint8_t>(length & 0xFF)});
  file.insert(file.end(), payload.begin(), payload.end());
}

}  // namespace kestrova::imaging
