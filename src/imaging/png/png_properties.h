#pragma once

#include "imaging/base/photo_properties.h"
#include "platform/bytes.h"

namespace kestrova::imaging {

bool beginsLikePng(ByteView file) noexcept;

/// What the first bytes of a PNG file say: the size of its IHDR chunk, the rest from its first eXIf chunk.
/// The bytes may end anywhere and hold anything after the signature. Allocates nothing.
PhotoProperties readPngProperties(ByteView prefix) noexcept;

/// The Exif block of the first eXIf chunk; empty when there is none.
ByteView pngExifBlock(ByteView file) noexcept;

}  // namespace kestrova::imaging
