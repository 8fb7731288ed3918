#pragma once

#include "imaging/embedded_jpeg.h"

#include <cstdint>
#include <span>

namespace kestrova::imaging {

/// Makes an XMP packet that of a photo whose pixels were turned upright: every tiff:Orientation becomes 1,
/// and `turnPreview` makes over the previews, JPEGs in base64 (xmpGImg:image). The packet may hold anything;
/// its length and all other bytes stay.
void editTurnedXmp(std::span<std::uint8_t> packet, const PreviewMaker& turnPreview);

}  // namespace kestrova::imaging
