#include "toolkit/jpeg_segments.h"

#include "imaging/jpeg_outline.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace kestrova {

namespace {

using namespace std::string_view_literals;

constexpr std::uint8_t app0 = 0xe0;
constexpr std::uint8_t app1 = 0xe1;
constexpr std::uint8_t app2 = 0xe2;
constexpr std::uint8_t app14 = 0xee;
constexpr std::string_view iccSignature = "ICC_PROFILE\0"sv;
constexpr std::size_t iccHeader =
    iccSignature.size() + 2;  // then the piece's number, from 1, and how many there are
constexpr std::size_t longestIccPiece = 0xffff - 2 - iccHeader;

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
  const std::size_t length = 2 + iccHeader + piece.size();
  append(bytes, Bytes{0xff, app2, static_cast<std::uint8_t>(length >> 8), static_cast<std::uint8_t>(length)});
  append(bytes, iccSignature);
  append(bytes, Bytes{static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(count)});
  append(bytes, piece);
}

/// Behind the JFIF segment, which has to come first where there is one.
std::size_t placeForProfile(ByteView file) {
  const bool jfif = file.size() > 6 && file[3] == app0;
  return jfif ? 4 + (std::size_t{file[4]} << 8 | file[5]) : 2;
}

}  // namespace

ByteView exifBlock(ByteView file) {
  const std::vector<ByteView> blocks = segmentsNamed(file, app1, "Exif\0\0"sv);
  return blocks.empty() ? ByteView() : blocks.front();
}

bool hasAdobeSegment(ByteView file) { return !segmentsNamed(file, app14, "Adobe"sv).empty(); }

Bytes iccProfile(ByteView file) {
  Bytes profile;
  std::size_t pieces = 0;
  std::size_t wanted = 0;
  for (const ByteView piece : segmentsNamed(file, app2, iccSignature)) {
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
