#pragma once

#include <cstdint>
#include <span>

namespace kestrova::imaging {

/// Sets every tiff:Orientation of an XMP packet, which may hold anything, to 1 (upright). All other bytes
/// stay.
void resetXmpOrientation(std::span<std::uint8_t> packet);

}  // namespace kestrova::imaging
