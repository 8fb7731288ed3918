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

/// Whether the payload of an application segment begins with this name, closing NULs included.
bool isNamed(ByteView payload, std::string_view name);

}  // namespace kestrova::imaging
