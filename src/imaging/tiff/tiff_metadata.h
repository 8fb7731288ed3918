#pragma once

#include "imaging/exif/exif_patch.h"
#include "platform/bytes.h"

namespace kestrova::imaging {

/// The TIFF `result` with all metadata that `source` has (Exif with maker notes and GPS, XMP, IPTC, colour
/// profile), except further pages and previews stored as pages. Waits for other threads that do the same:
/// Exiv2's XMP reader is one for all. Throws ImageError.
Bytes withMetadata(const Bytes& result, ByteView source, const MetadataEdit& edit);

}  // namespace kestrova::imaging
