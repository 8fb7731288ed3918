#pragma once

#include "imaging/base/begins_with.h"
#include "platform/bytes.h"

#include <cstddef>
#include <string_view>

namespace kestrova::imaging {

/// The length of the name before the Exif block of a JPEG segment, and by mistake also of some PNG chunks:
/// "Exif", a NUL and one more byte, of any value. 0 when the payload does not begin with it. The block is
/// what follows.
inline std::size_t exifNameLength(ByteView payload) noexcept {
  constexpr std::string_view name("Exif\0", 5);
  return payload.size() > name.size() && beginsWith(payload, name) ? name.size() + 1 : 0;
}

}  // namespace kestrova::imaging
