#include "toolkit/jpeg_segments.h"

#include <algorithm>
#include <string_view>

namespace kestrova {

namespace {

using namespace std::string_view_literals;

constexpr std::uint8_t startOfScan = 0xda;
constexpr std::uint8_t app0 = 0xe0;
constexpr std::uint8_t app1 = 0xe1;
constexpr std::uint8_t app2 = 0xe2;
constexpr std::uint8_t app14 = 0xee;
constexpr std::string_view iccSignature = "ICC_PROFILE\0"sv;
constexpr std::size_t iccHeader =
    iccSignature.size() + 2;  // then the piece's number, from 1, and how many there are
constexpr std::size_t longestIccPiece = 0xffff - 2 - iccHeader;

bool startsWith(ByteView bytes, std::string_view text) {
  return bytes.size() >= text.size() &&
         std::equal(text.begin(), text.end(), bytes.begin(),
                    [](char c, std::uint8_t b) { return static_cast<std::uint8_t>(c) == b; });
}

std::size_t lengthAt(ByteView file, std::size_t position) {
  return static_cast<std::size_t>(file[position]) << 8 | file[position + 1];
}

ByteView segmentStartingWith(ByteView file, std::uint8_t marker, std::string_view text) {
  for (const JpegSegment& segment : jpegSegments(file)) {
    if (segment.marker == marker && startsWith(segment.payload, text)) return segment.payload;
  }
  return {};
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
  return jfif ? 4 + lengthAt(file, 4) : 2;
}

}  // namespace

std::vector<JpegSegment> jpegSegments(ByteView file) {
  std::vector<JpegSegment> segments;
  for (std::size_t position = 2; position + 4 <= file.size() && file[position] == 0xff;) {
    const std::uint8_t marker = file[position + 1];
    if (marker == 0xff) {  // a fill byte
      ++position;
      continue;
    }
    const std::size_t length = lengthAt(file, position + 2);
    if (marker == startOfScan || length < 2 || file.size() - position - 2 < length) break;
    segments.push_back({marker, file.subspan(position + 4, length - 2)});
    position += 2 + length;
  }
  return segments;
}

ByteView exifBlock(ByteView file) {
  constexpr auto signature = "Exif\0\0"sv;
  const ByteView payload = segmentStartingWith(file, app1, signature);
  return payload.empty() ? payload : payload.subspan(signature.size());
}

bool hasAdobeSegment(ByteView file) { return !segmentStartingWith(file, app14, "Adobe"sv).empty(); }

Bytes iccProfile(ByteView file) {
  Bytes profile;
  std::size_t pieces = 0;
  std::size_t wanted = 0;
  for (const auto& [marker, payload] : jpegSegments(file)) {
    if (marker != app2 || payload.size() < iccHeader || !startsWith(payload, iccSignature)) continue;
    if (payload[iccHeader - 2] != ++pieces) return {};
    wanted = payload[iccHeader - 1];
    append(profile, payload.subspan(iccHeader));
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
