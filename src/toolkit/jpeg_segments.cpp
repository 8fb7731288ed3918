#include "toolkit/jpeg_segments.h"

#include "imaging/jpeg/jpeg_outline.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace kestrova {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t iccHeader =
    imaging::profileName.size() + 2;  // then the piece's number, from 1, and how many there are
constexpr std::size_t longestIccPiece = imaging::mostPayloadBytes - iccHeader;

/// What stands behind the name in each of the segments of that marker and name.
std::vector<ByteView> segmentsNamed(ByteView file, std::uint8_t marker, std::string_view name) {
  std::vector<ByteView> contents;
  const auto outline = imaging::outlineJpeg(file);
  if (!outline) return contents;
  for (const imaging::JpegSegment& segment : outline->metadata) {
    const ByteView payload = file.subspan(segment.offset, segment.length);
    if (segment.marker == marker && imaging::isNamed(payload, name)) {
      contents.push_back(payload.subspan(name.size()));
    }
  }
  return contents;
}

template <typename Range>
void append(Bytes& bytes, const Range& more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
}

void appendIccSegment(Bytes& bytes, ByteView piece, std::size_t number, std::size_t count) {
  Bytes payload(imaging::profileName.begin(), imaging::profileName.end());
  append(payload, Bytes{static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(count)});
  append(payload, piece);
  imaging::appendSegment(bytes, imaging::app2, payload);
}

/// Behind the JFIF segment, which has to come first where there is one.
std::size_t placeForProfile(ByteView file) {
  const bool jfif = file.size() > 6 && file[3] == imaging::app0;
  return jfif ? 4 + (std::size_t{file[4]} << 8 | file[5]) : 2;
}

}  // namespace

ByteView exifBlock(ByteView file) {
  const std::vector<ByteView> blocks = segmentsNamed(file, imaging::app1, imaging::exifName);
  return blocks.empty() ? ByteView() : blocks.front();
}

bool hasAdobeSegment(ByteView file) { return !segmentsNamed(file, imaging::app14, "Adobe"sv).empty(); }

Bytes iccProfile(ByteView file) {
  Bytes profile;
  std::size_t pieces = 0;
  std::size_t wanted = 0;
  for (const ByteView piece : segmentsNamed(file, imaging::app2, imaging::profileName)) {
    if (piece.size() < 2 || piece[0] != ++pieces) return {};
    wanted = piece[1];
    append(profile, piece.subspan(2));
  }
  return pieces == wanted ? profile : Bytes();
}

Bytes withIccProfile(ByteView file, ByteView profile) {
  const std::size_t count = (profile.size() + longestIccPiece - 1) / longestIccPiece;
  const std::size_t place = placeForProfile(file);
  Bytes result(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(place));
  for (std::size_t i = 0; i < count && count <= 255; ++i) {
    const std::size_t start = i * longestIccPiece;
    appendIccSegment(result, profile.subspan(start, std::min(longestIccPiece, profile.size() - start)), i + 1,
                     count);
  }
  append(result, file.subspan(place));
  return result;
}

}  // namespace kestrova
