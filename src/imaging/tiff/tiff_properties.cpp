#include "imaging/tiff/tiff_properties.h"

#include "imaging/exif/exif_values.h"

namespace kestrova::imaging {

bool beginsLikeTiff(ByteView file) noexcept { return TiffReader::open(file).has_value(); }

PhotoProperties readTiffProperties(ByteView prefix) noexcept { return readExif(prefix).properties; }

}  // namespace kestrova::imaging
