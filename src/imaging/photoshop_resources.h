#pragma once

#include "platform/bytes.h"

namespace kestrova::imaging {

/// Takes the previews (resources 1033 and 1036) out of image resources as Photoshop writes them: a row of
/// "8BIM" blocks, in a JPEG's segment behind "Photoshop 3.0\0". All other resources stay byte for byte; so
/// does all that is none.
void dropPhotoshopPreviews(Bytes& payload);

}  // namespace kestrova::imaging
