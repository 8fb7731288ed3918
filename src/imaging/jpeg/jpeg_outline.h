#pragma once

#include "platform/bytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace kestrova::imaging {

/// One marker segment of a JPEG that holds no pixels: an application segment or a comment.
struct JpegSegment {
  std::uint8_t marker = 0;
  std::size_t offset = 0;  ///< of the payload, in the file
  std::size_t length = 0;
};

/// Where things lie in a JPEG file, by its markers alone.
struct JpegOutline {
  std::vector<JpegSegment> metadata;  ///< in their order
  int scans = 0;
  std::size_t imageEnd = 0;  ///< just behind the end-of-image marker: what follows is no longer the image
};

/// Nothing when the file is no JPEG, or has no end-of-image marker. The file may hold anything.
std::optional<JpegOutline> outlineJpeg(ByteView file);

/// The markers of application segments, and the names with which those begin that several modules know.
enum ApplicationMarker : std::uint8_t {
  app0 = 0xE0,
  app1 = 0xE1,
  app2 = 0xE2,
  app13 = 0xED,
  app14 = 0xEE,
  app15 = 0xEF,
};
inline constexpr std::string_view exifName{"Exif\0\0", 6};
inline constexpr std::string_view profileName{"ICC_PROFILE\0", 12};

/// The most bytes that a segment's payload may have.
inline constexpr std::size_t mostPayloadBytes = 0xFFFF - 2;

/// Whether the payload of an application segment begins with this name, closing NULs included.
bool isNamed(ByteView payload, std::string_view name);

/// Appends a segment: marker, length, payload.
void appendSegment(Bytes& file, std::uint8_t marker, ByteView payload);

}  // namespace kestrova::imaging
