#pragma once

#include "platform/bytes.h"

namespace kestrova {

/// The TIFF block of the Exif segment; empty when there is none.
ByteView exifBlock(ByteView file);

/// Whether the file says how its colours are stored in Adobe's way.
bool hasAdobeSegment(ByteView file);

/// The ICC profile, put together from its segments (ICC.1, annex B.4); empty when there is none or a piece is
/// missing.
Bytes iccProfile(ByteView file);

/// The JPEG with the ICC profile put in front of its segments; an empty profile, or one too long, is left
/// out. The file must be a whole JPEG.
Bytes withIccProfile(ByteView file, ByteView profile);

}  // namespace kestrova
