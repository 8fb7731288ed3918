#pragma once

#include "imaging/base/photo_properties.h"
#include "platform/bytes.h"

namespace kestrova::imaging {

bool beginsLikeJpeg(ByteView file) noexcept;

/// What the first bytes of a JPEG file say: the size of its frame header, or else of its Exif block; the rest
/// from its first Exif block. The bytes may end anywhere and hold anything. Allocates nothing.
PhotoProperties readJpegProperties(ByteView prefix) noexcept;

/// The first Exif block before the pixels, without the name that its segment begins with; empty when there is
/// none.
ByteView jpegExifBlock(ByteView file) noexcept;

}  // namespace kestrova::imaging
