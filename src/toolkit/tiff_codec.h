#pragma once

#include "platform/bytes.h"

#include <QImage>
#include <cstddef>
#include <vector>

namespace kestrova {

/// More pages than this are not read from one TIFF file.
inline constexpr std::size_t maximumPages = 64;

/// The first pages of a TIFF or BigTIFF file, as their pixels are stored, 8 bits a sample; none when one of
/// them does not decode, or when together they break the bounds of image_limits.h. `encodeTiff` of
/// image_codec.h is the way back.
std::vector<QImage> decodeTiff(ByteView file, std::size_t atMostPages);

}  // namespace kestrova
