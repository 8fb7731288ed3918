#pragma once

#include "platform/bytes.h"

#include <cstddef>

namespace kestrova::imaging {

/// Takes the previews (resources 1033 and 1036) out of image resources as Photoshop writes them: a row of
/// "8BIM" blocks, which begins at `begin`. All other resources stay byte for byte; so does all that is none.
void dropPhotoshopPreviews(Bytes& resources, std::size_t begin = 0);

}  // namespace kestrova::imaging
