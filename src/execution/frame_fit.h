#pragma once

#include "model/picture_size.h"

namespace kestrova {

/// The size at which a picture fits into a frame; a picture is never enlarged. The aspect alone, as a
/// single-precision number, decides which side of the frame limits: the width above 16/9, the height at 16/9
/// and below, so that upright pictures are limited by the height too. The side that follows from it is
/// rounded to single precision.
PictureSize fitIntoFrame(PictureSize picture, PictureSize frame);

}  // namespace kestrova
