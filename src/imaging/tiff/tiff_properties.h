#pragma once

#include "imaging/base/photo_properties.h"
#include "platform/bytes.h"

namespace kestrova::imaging {

/// True also for BigTIFF and for cameras' raw files that are TIFF except for their magic number.
bool beginsLikeTiff(ByteView file) noexcept;

/// What the first bytes of a TIFF file say about its first page, and so about the photo. The bytes may end
/// anywhere and hold anything. Allocates nothing.
PhotoProperties readTiffProperties(ByteView prefix) noexcept;

}  // namespace kestrova::imaging
