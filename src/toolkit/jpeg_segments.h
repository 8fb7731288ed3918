#pragma once

#include "platform/bytes.h"

#include <vector>

namespace kestrova {

/// A marker segment of a JPEG file (ITU-T T.81, annex B), without marker and length.
struct JpegSegment {
  std::uint8_t marker = 0;  ///< its second byte
  ByteView payload;         ///< a view into the file
};

/// The segments between the file's start and its first scan, as far as they are there as a whole.
std::vector<JpegSegment> jpegSegments(ByteView file);

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
