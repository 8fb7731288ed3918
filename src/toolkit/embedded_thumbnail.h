#pragma once

#include "platform/bytes.h"

namespace kestrova {

/// The small JPEG that the second directory of a JPEG file's Exif data holds (Exif 2.3, 4.5.4); empty when
/// there is none.
Bytes embeddedThumbnail(ByteView jpegFile);

}  // namespace kestrova
