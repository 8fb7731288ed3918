#pragma once

#include "imaging/exif/exif_patch.h"
#include "platform/bytes.h"

#include <cstdint>
#include <optional>

namespace kestrova::imaging {

/// The TIFF `result` with all metadata that `source` has (Exif with maker notes and GPS, XMP, IPTC, colour
/// profile), except further pages and previews stored as pages. One thread at a time: Exiv2's XMP reader is
/// shared. Throws ImageError.
///
/// Only the XMP changes of `edit` are made here. Sets the orientation where one is given.
Bytes withMetadata(const Bytes& result, ByteView source, const MetadataEdit& edit,
                   std::optional<std::int64_t> orientation);

}  // namespace kestrova::imaging
