#pragma once

#include "platform/bytes.h"

namespace kestrova::imaging {

/// The small JPEG that the second directory of a photo's first Exif block holds (Exif 2.3, 4.5.4); empty when
/// there is none. It is a part of the file's bytes.
ByteView embeddedPreview(ByteView photo);

}  // namespace kestrova::imaging
